// The unit's Pelltrim fine offset in clicks, its calibration value and the calibrated mode. Nothing
// is asked of a unit whose option word has no fine tuning.
#pragma once

#include "device/Options.h"

class FineTuning
{
public:
    static constexpr int MinPelltrimAbsoluteSetting = 0; // clicks
    static constexpr int MaxPelltrimAbsoluteSetting = 255;

    FineTuning(Exchange &exchange, UnitEvents &events, Options &options)
        : m_exchange(exchange), m_events(events), m_options(options)
    {
    }

    std::int16_t Pelltrim();               // *ZNSE?
    void setPelltrim(std::int16_t clicks); // sent as it stands; the unit judges it
    std::int16_t PelltrimCal();            // *ZNCA?
    void setPelltrimCal(std::int16_t clicks);
    bool ZN_calMode(); // *ZNCM? above firmware 2.27
    // Sent above firmware 2.27, emulated above 2.2, nothing below.
    void setZN_calMode(bool on);

    // Asks for both values, as a connection does.
    void readFineTuning();

    void forgetFineTuning(); // another unit may answer

private:
    std::optional<UnitValue> shownValue(const std::int16_t &member) const;
    std::int16_t askClicks(const char *source, const char *command, const char *message,
                           std::int16_t &member);
    std::int32_t writeClicks(const char *source, const char *command, std::int16_t clicks,
                             const char *message, std::int16_t &member);
    std::int32_t writePelltrim(std::int16_t clicks);
    std::int16_t askCalibration();
    std::int32_t changeMode(bool on);

    Exchange &m_exchange;
    UnitEvents &m_events;
    Options &m_options;
    static constexpr std::int16_t unknownClicks = 128; // the middle
    std::int16_t m_pelltrim = unknownClicks;
    std::int16_t m_pelltrimCal = unknownClicks;
    std::int16_t m_rememberedPelltrim = 0;
    bool m_calMode = false;
};
