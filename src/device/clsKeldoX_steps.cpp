// Tuning the unit: the step query, the step command and the lock state that answers it, and the
// frequency that is turned into a step.
#include "device/clsKeldoX.h"

#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"

std::int32_t clsKeldoX::CurrentStep()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return setup().initialized ? m_currentStep : 0;
    reportAndEnd("clsKeldoX.Get CurrentStep", [this] {
        const std::int32_t status =
            ask({"*STEP?", isNumeric,
                 "The device did not respond correctly to a 'current step' query."},
                [this](double number) { m_currentStep = toInt32(number); });
        if (status == Good)
            raiseFreqChange(m_currentStep);
        finish(status);
    });
    return m_currentStep;
}

void clsKeldoX::setCurrentStep(std::int32_t step)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let CurrentStep", [&] {
        if (!setup().deviceFound || !PortIsOpen())
            return;
        if (m_maxStep == 0)
            askMaxStep();
        if (step < 0 || step > m_maxStep)
            return;
        const QString reply = deviceWrite(QStringLiteral("*STEP") + numberToTextWithBlank(step));
        judgeStepReply(reply, step);
    });
}

// The step command is the one setting whose reply is the lock state, not an echo.
void clsKeldoX::judgeStepReply(const QString &reply, std::int32_t step)
{
    std::int32_t status = Good;
    if (reply == QLatin1String("LOCKED")) {
        emit StatusChange(LockedAfterStep);
        keep(Good);
        m_currentStep = step;
        raiseFreqChange(step);
    } else if (reply.contains(QLatin1String("UNLOCKED"))) {
        status = keep(Unlocked);
        complain("The device oscillator is unlocked!");
        m_currentStep = step; // the unit has moved all the same
        raiseFreqChange(step);
        if (m_raiseErrorEvents)
            emit DUTError(true);
    } else if (reply.startsWith(QLatin1String("PERMISSION DENIED"))) {
        status = keep(Refused);
        // Always FreqChange: a window that follows a drag cheaply has to go back for good.
        emit FreqChange(m_currentStep, StepsToMHz(m_currentStep) + m_startFreq);
        emit GetPassword();
    } else {
        status = keep(BadReply);
        complain("The device did not respond correctly to a 'current step' command.");
        emit FreqChange(m_currentStep, StepsToMHz(m_currentStep) + m_startFreq);
    }
    finish(status);
}

void clsKeldoX::raiseFreqChange(std::int32_t step)
{
    const double megahertz = StepsToMHz(step) + m_startFreq;
    if (m_quickFreq)
        emit QuickFreqChange(step, megahertz);
    else
        emit FreqChange(step, megahertz);
}

double clsKeldoX::currentFreq()
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Get currentFreq", [this] {
        if (m_startFreq == 0)
            askStartFreq();
        const std::int32_t step = CurrentStep();
        m_currentFreq = StepsToMHz(step) + m_startFreq;
    });
    return m_currentFreq;
}

void clsKeldoX::setCurrentFreq(double megahertz)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let currentFreq", [&] {
        if (!setup().deviceFound || !PortIsOpen())
            return;
        if (m_startFreq == 0)
            askStartFreq();
        if (m_stopFreq == 0)
            StopFreq();
        if (megahertz >= m_startFreq && megahertz <= m_stopFreq)
            setCurrentStep(toInt32(MHzToSteps(megahertz - m_startFreq)));
        else
            // Whatever DisplayErrors says: the operator asked for something that cannot be.
            showMessage(QStringLiteral("Cannot set the device to a frequency outside its range."),
                        MessageBox::Exclamation);
    });
}

bool clsKeldoX::Locked()
{
    const auto unit = keepAlive();
    bool locked = false;
    reportAndEnd("clsKeldoX.Get Locked", [&] {
        if (!PortIsOpen())
            return;
        const QString reply = deviceWrite(QStringLiteral("*LOCK?"));
        locked = reply == QLatin1String("LOCKED");
        const bool unlocked = reply == QLatin1String("UNLOCKED");
        std::int32_t status = BadReply;
        if (locked)
            status = LockedAfterStep;
        else if (unlocked)
            status = Unlocked;
        keep(status);
        if (!locked)
            complain(unlocked ? "The device oscillator is unlocked!"
                              : "The device did not respond correctly to a 'locked?' query.");
        finish(status);
    });
    return locked;
}
