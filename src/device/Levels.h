// The unit's level controls in dB: AGC, attenuation, input attenuation, AGC offset, bypass and
// input limiting. Firmware gates are silent: an old unit shows 0 or no change.
#pragma once

#include "device/Options.h"

class Levels
{
public:
    Levels(Exchange &exchange, UnitEvents &events, Options &options)
        : m_exchange(exchange), m_events(events), m_options(options)
    {
    }

    bool AGC();           // *AGC_?
    void setAGC(bool on); // firmware above 1.6
    double atten();       // *ATTN?; a bad reply is normal while AGC runs. Raises no StatusChange.
    void setAtten(double decibels);
    std::int16_t MaxAtten(); // *MXAT?, or from option word A on firmware up to 2.3
    double attenStep();      // "*ATT STEP? "; 0 when the unit cannot tell
    double InputAtten();     // "INPUT ATTN?"; raises no event
    void setInputAtten(double decibels);
    double attenOffset(); // *AOFF?; firmware 2.0 and above
    void setAttenOffset(double decibels);
    bool Bypass(); // *ACT_?
    void setBypass(bool on);
    bool HasAdjustableInputLimiting(); // firmware 3.37 and above
    std::int16_t InputLimitingMode();  // "InputLimitMode?"
    void setInputLimitingMode(std::int16_t mode);

private:
    bool offersOffset();
    bool offersInputLimiting();

    Exchange &m_exchange;
    UnitEvents &m_events;
    Options &m_options;
    bool m_agc = false;
    double m_atten = 0;
    std::int16_t m_maxAtten = 0;
    double m_attenStep = 0;
    double m_inputAtten = 0;
    double m_agcOffset = 0;
    bool m_bypass = false;
    std::int16_t m_inputLimitingMode = 0;
};
