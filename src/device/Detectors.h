// Below the operator's controls, for service and calibration: the unit's power detectors, the AGC
// deadband and the AGC table in the unit's memory.
#pragma once

#include "device/Options.h"

#include <optional>

class Detectors
{
public:
    static constexpr std::int16_t FirstAddr = 36; // of the AGC table in the unit's memory
    static constexpr std::int16_t SizeOfAGCTable = 50;
    // Deliberately one past the last entry: a scratch address.
    static constexpr std::int16_t LastAddr = FirstAddr + SizeOfAGCTable;

    Detectors(Exchange &exchange, Options &options) : m_exchange(exchange), m_options(options) {}

    // DETA?; on firmware below 2.33 through the AGC table's scratch address, which is left as it
    // was. After a bad reply the reading before.
    std::int32_t DetectorReading();
    std::int32_t InputDetectorReading(); // DETB?
    std::int16_t deadBand();             // *DBND?
    void setDeadBand(std::int16_t value);
    std::int16_t StartOfAGCTable();        // *ATAB?
    void setAGCaddr(std::int16_t address); // !SRCE
    std::int16_t AGCdata();                // *DATA?, the byte at the address, 0 to 255
    void setAGCdata(std::int16_t byte);    // !WDAT
    // !ATAB: the unit stores its detector value at the address. Gives that value; 0 when it failed.
    std::int32_t StoreADCvalue(std::int16_t address);

private:
    std::int32_t askDetector(const char *source, const char *command, std::int32_t &reading);
    void readDetectorThroughTable();
    std::optional<std::int16_t> askAGCdata();
    std::int32_t storeADC(std::int16_t address, std::int32_t &reading);

    Exchange &m_exchange;
    Options &m_options;
    std::int32_t m_detectorReading = 0;
    std::int32_t m_inputDetectorReading = 0;
    std::int16_t m_deadBand = 0;
    std::int16_t m_startOfAGCTable = 0;
    std::int16_t m_agcData = 0;
};
