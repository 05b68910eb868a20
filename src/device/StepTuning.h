// Tuning the unit: the step query, the step command and the lock state that answers it, and the
// frequency that is turned into a step.
#pragma once

#include "device/FrequencyPlan.h"

class StepTuning
{
public:
    StepTuning(Exchange &exchange, UnitEvents &events, FrequencyPlan &plan)
        : m_exchange(exchange), m_events(events), m_plan(plan)
    {
    }

    std::int32_t CurrentStep(); // *STEP?; asked at every read
    // *STEP n. Steps below 0 or beyond the maximum are ignored.
    void setCurrentStep(std::int32_t step);
    double currentFreq(); // MHz
    // Tunes to the nearest step. A box tells of a frequency outside start to stop.
    void setCurrentFreq(double megahertz);
    bool Locked(); // *LOCK?

    void setQuickfreq(bool quick) { m_quickFreq = quick; } // on: QuickFreqChange, not FreqChange
    // On: an unlocked oscillator in a step reply also raises DUTError.
    void setRaiseErrorEvents(bool raise) { m_raiseErrorEvents = raise; }

private:
    void judgeStepReply(const QString &reply, std::int32_t step);
    void raiseFreqChange(std::int32_t step);
    void raiseOldFrequency();

    Exchange &m_exchange;
    UnitEvents &m_events;
    FrequencyPlan &m_plan;
    std::int32_t m_currentStep = 0;
    double m_currentFreq = 0;
    bool m_quickFreq = false;
    bool m_raiseErrorEvents = false;
};
