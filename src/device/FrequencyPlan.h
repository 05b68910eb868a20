// The unit's frequency plan, and the conversions between megahertz and steps.
#pragma once

#include "device/Options.h"

#include <optional>

class FrequencyPlan
{
public:
    FrequencyPlan(Exchange &exchange, Options &options) : m_exchange(exchange), m_options(options)
    {
    }

    double StartFreq(); // MHz; *START FREQ?
    void setStartFreq(double megahertz);
    double StopFreq(); // computed: start + maximum step
    double CenterFreq();
    std::int32_t IFfreq();                  // *IFRQ?, rounded to whole MHz
    void setIFfreq(std::int32_t megahertz); // up to 2147 MHz; beyond it error 6 is reported
    std::int32_t ChanBW(); // *BNDW?, Hz as the unit reports it; 0 on firmware up to 1.6
    void setChanBW(std::int32_t bandwidth);
    std::int32_t ChannelSpacing(); // *CHAN SPACE?, Hz; asked at every read
    void setChannelSpacing(std::int32_t hertz);
    std::int32_t MaxStep(); // *MAX STEP?
    void setMaxStep(std::int32_t steps);
    std::int16_t preScaler();                // *PRSC?
    void setPreScaler(std::int16_t divisor); // 64 or 128; others are ignored

    // Offsets from the start frequency, unrounded. 0 steps while the spacing is not known.
    double MHzToSteps(double megahertz);
    double StepsToMHz(std::int32_t steps);
    // Preset memory: 500 entries of two bytes from address 94208.
    static std::int32_t RomAdddrToStep(std::int32_t address); // zero-based entry
    static std::int32_t OneBasedIndexToRomAddr(std::int32_t index);

    // For tuning. Each asks the unit for what is not known, that is 0, also once it is initialized.
    void findStartFreq();
    std::int32_t knownMaxStep();
    double frequencyOf(std::int32_t step); // MHz, from the start frequency as it stands
    // Steps from the start, unrounded; nothing for a frequency outside start to stop.
    std::optional<double> stepsOf(double megahertz);

private:
    double askStartFreq();
    std::int32_t askMaxStep();

    Exchange &m_exchange;
    Options &m_options;
    double m_startFreq = 0;
    double m_stopFreq = 0;
    double m_centerFreq = 0;
    std::int32_t m_ifFreq = 0;
    std::int32_t m_channelSpacing = 0;
    std::int32_t m_maxStep = 0;
    std::int32_t m_channelBandwidth = 0;
};
