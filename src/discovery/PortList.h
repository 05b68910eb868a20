// The ports that can be opened.
#pragma once

#include <cstdint>
#include <functional>

// Tries every port 1 to 255 of a fresh listing and hands over the number of each one that opens; it
// is closed again by then, and events are handled in between. Ends early when the program ends.
void listOpenablePorts(const std::function<void(std::int16_t port)> &found);
