// Sending the unit to a step, and what its lock state answers.
#include "device/StepTuning.h"

#include "core/Message.h"
#include "core/TextNumbers.h"

namespace {

constexpr char oscillatorUnlocked[] = "The device oscillator is unlocked!";

} // namespace

std::int32_t StepTuning::CurrentStep()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get CurrentStep",
         .command = "*STEP?",
         .isGood = isNumeric,
         .message = "The device did not respond correctly to a 'current step' query.",
         .event = [this] { raiseFreqChange(m_currentStep); },
         .announcing = Exchange::GoodEventThenStatus,
         .unasked = Exchange::GivesSetUpValue},
        m_currentStep);
}

void StepTuning::setCurrentStep(std::int32_t step)
{
    m_exchange.run("clsKeldoX.Let CurrentStep", [&] {
        if (!m_exchange.setup().deviceFound)
            return;
        const std::int32_t last = m_plan.knownMaxStep();
        if (step < 0 || step > last)
            return;
        judgeStepReply(m_exchange.send(QStringLiteral("*STEP") + numberToTextWithBlank(step)).text,
                       step);
    });
}

// The step command is the one setting whose reply is the lock state, not an echo.
void StepTuning::judgeStepReply(const QString &reply, std::int32_t step)
{
    std::int32_t status = UnitEvents::Good;
    if (reply == ReplyText::locked) {
        emit m_events.StatusChange(UnitEvents::LockedAfterStep);
        m_exchange.keep(status);
        m_currentStep = step;
        raiseFreqChange(step);
    } else if (reply.contains(ReplyText::unlocked)) {
        status = m_exchange.reject(oscillatorUnlocked, UnitEvents::Unlocked);
        m_currentStep = step; // the unit has moved all the same
        raiseFreqChange(step);
        if (m_raiseErrorEvents)
            emit m_events.DUTError(true);
    } else if (ReplyText::isRefused(reply)) {
        status = m_exchange.keep(UnitEvents::Refused);
        raiseOldFrequency();
        emit m_events.GetPassword();
    } else {
        status =
            m_exchange.reject("The device did not respond correctly to a 'current step' command.");
        raiseOldFrequency();
    }
    m_exchange.finish(status);
}

void StepTuning::raiseFreqChange(std::int32_t step)
{
    const double megahertz = m_plan.frequencyOf(step);
    if (m_quickFreq)
        emit m_events.QuickFreqChange(step, megahertz);
    else
        emit m_events.FreqChange(step, megahertz);
}

// Always FreqChange: a window that follows a drag cheaply has to go back for good.
void StepTuning::raiseOldFrequency()
{
    emit m_events.FreqChange(m_currentStep, m_plan.frequencyOf(m_currentStep));
}

double StepTuning::currentFreq()
{
    const auto unit = m_exchange.keepAlive();
    reportAndEnd("clsKeldoX.Get currentFreq", [this] {
        m_plan.findStartFreq();
        m_currentFreq = m_plan.frequencyOf(CurrentStep());
    });
    return m_currentFreq;
}

void StepTuning::setCurrentFreq(double megahertz)
{
    m_exchange.run("clsKeldoX.Let currentFreq", [&] {
        if (!m_exchange.setup().deviceFound)
            return;
        const auto steps = m_plan.stepsOf(megahertz);
        if (steps)
            setCurrentStep(toInt32(*steps));
        else
            // Whatever DisplayErrors says: the operator asked for something that cannot be.
            showMessage(QStringLiteral("Cannot set the device to a frequency outside its range."),
                        MessageBox::Exclamation);
    });
}

bool StepTuning::Locked()
{
    bool locked = false;
    m_exchange.run("clsKeldoX.Get Locked", [&] {
        const QString reply = m_exchange.send(QStringLiteral("*LOCK?")).text;
        locked = reply == ReplyText::locked;
        std::int32_t status = UnitEvents::LockedAfterStep;
        if (reply == ReplyText::unlocked)
            status = m_exchange.reject(oscillatorUnlocked, UnitEvents::Unlocked);
        else if (!locked)
            status =
                m_exchange.reject("The device did not respond correctly to a 'locked?' query.");
        m_exchange.finish(status);
    });
    return locked;
}
