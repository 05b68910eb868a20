// Makes one channel's unit the current unit of the whole program.
#pragma once

#include "device/clsKeldoX.h"

#include <cstdint>
#include <memory>

// Points both windows at the unit in the channel's slot of the device table (one is made where the
// slot is empty), initializes it and tells the outcome in status bars and log. `device` becomes
// that unit. Channel 0 only logs. The result is 0 in every case: success is seen in the status
// bars, the log and the unit's events.
std::int16_t ConnectToDevice(std::shared_ptr<clsKeldoX> &device, std::int16_t channel);
