// The unit's level controls: AGC, attenuation, input attenuation, AGC offset, bypass and input
// limiting. Firmware gates are silent: an old unit shows 0 or no change.
#include "device/clsKeldoX.h"

#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

namespace {

constexpr double lastFirmwareWithoutAGC = 1.6;
constexpr double firstFirmwareWithAGCOffset = 2.0;
constexpr double lastFirmwareWithoutMaxAtten = 2.3;
constexpr double firstFirmwareWithInputLimiting = 3.37;

bool endsWithdB(const QString &reply)
{
    return reply.endsWith(QLatin1String("dB"));
}

// "1" or "0" as the first character.
bool isSwitch(const QString &reply)
{
    return reply.startsWith(QLatin1Char('1')) || reply.startsWith(QLatin1Char('0'));
}

QString onOff(bool on)
{
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

bool clsKeldoX::AGC()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return false;
    reportAndEnd("clsKeldoX.Get AGC", [this] {
        const QString reply = deviceWrite(QStringLiteral("*AGC_?"));
        std::int32_t status = Good;
        if (isSwitch(reply)) {
            m_agc = reply.startsWith(QLatin1Char('1'));
        } else {
            status = BadReply;
            complain("The device did not respond correctly to an AGC query.");
        }
        keep(status);
        emit AGCChange(m_agc);
        finish(status);
    });
    return m_agc;
}

void clsKeldoX::setAGC(bool on)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let AGC", [&] {
        if (!PortIsOpen() || firmwareNumber() <= lastFirmwareWithoutAGC)
            return;
        const QString reply = deviceWrite(QStringLiteral("*AGC_ ") + onOff(on));
        const std::int32_t status = judgeSwitch(
            reply, on, "The device did not respond correctly to an AGC command.", m_agc);
        emit AGCChange(m_agc);
        finish(status);
    });
}

// No StatusChange here: a bad reply is normal while AGC runs and must not turn the light red.
double clsKeldoX::atten()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return 0;
    reportAndEnd("clsKeldoX.Get atten", [this] {
        ask({"*ATTN?", endsWithdB,
             "The device did not respond correctly to an 'attenuation' query.\r\n"
             "NOTE - This is normal if AGC is on."},
            [this](double number) { m_atten = number; });
        emit AttenChange(m_atten);
    });
    return m_atten;
}

void clsKeldoX::setAtten(double decibels)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let atten", [&] {
        if (!PortIsOpen())
            return;
        const QString value = numberToTextWithBlank(decibels);
        const std::int32_t status =
            judgeEcho(deviceWrite(QStringLiteral("*ATTN") + value), value,
                      "The device did not respond correctly to an attenuation command.",
                      [this](double number) { m_atten = number; });
        emit AttenChange(m_atten);
        finish(status);
    });
}

std::int16_t clsKeldoX::MaxAtten()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return 0;
    reportAndEnd("clsKeldoX.Get MaxAtten", [this] {
        if (firmwareNumber() <= lastFirmwareWithoutMaxAtten) {
            m_maxAtten = maxAttenByOptions();
            return;
        }
        const QString reply = deviceWrite(QStringLiteral("*MXAT?"));
        std::int32_t status = Good;
        try {
            if (reply.startsWith(QLatin1String("UNRECOGNIZED COMMAND")))
                status = BadReply;
            else
                m_maxAtten = toInt16(leadingNumber(reply));
        } catch (const RunTimeError &) {
            status = BadReply;
        }
        keep(status);
        if (status == BadReply)
            complain("The device did not respond correctly to a 'max attenuation' query.");
        finish(status);
    });
    return m_maxAtten;
}

// A unit that cannot tell its step simply has step 0; that is no error.
double clsKeldoX::attenStep()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return 0;
    reportAndEnd("clsKeldoX.Get attenStep", [this] {
        const QString reply = deviceWrite(QStringLiteral("*ATT STEP? "));
        m_attenStep =
            reply.endsWith(QLatin1String("dB steps")) ? leadingNumber(ParseData(reply)) : 0;
        finish(Good);
    });
    return m_attenStep;
}

double clsKeldoX::InputAtten()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return 0;
    reportAndEnd("clsKeldoX.Get InputAtten", [this] {
        ask({"INPUT ATTN?", endsWithdB,
             "The device did not respond correctly to an 'input attenuation' query."},
            [this](double number) { m_inputAtten = number; });
    });
    return m_inputAtten;
}

// The one setting without a password path, on purpose: a refusal is a bad reply like any other.
void clsKeldoX::setInputAtten(double decibels)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let InputAtten", [&] {
        if (!PortIsOpen())
            return;
        const QString value = numberToTextWithBlank(decibels);
        const QString number = ParseData(deviceWrite(QStringLiteral("INPUT ATTN") + value));
        std::int32_t status = Good;
        if (isNumeric(number) && numericValue(number) == leadingNumber(value))
            m_inputAtten = numericValue(number);
        else
            status = BadReply;
        keep(status);
        if (status == BadReply)
            complain("The device did not respond correctly to an input attenuation command.");
        emit InputAttenChange(m_inputAtten);
        finish(status);
    });
}

// The reverse of the usual order, on purpose: the status first, then the value.
double clsKeldoX::attenOffset()
{
    const auto unit = keepAlive();
    if (!PortIsOpen() || firmwareNumber() < firstFirmwareWithAGCOffset)
        return 0;
    reportAndEnd("clsKeldoX.Get attenOffset", [this] {
        finish(ask({"*AOFF?", endsWithdB,
                    "The device did not respond correctly to an 'attenuation offset' query."},
                   [this](double number) { m_agcOffset = number; }));
        emit AGCOffsetChange(m_agcOffset);
    });
    return m_agcOffset;
}

void clsKeldoX::setAttenOffset(double decibels)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let attenOffset", [&] {
        if (!PortIsOpen() || firmwareNumber() < firstFirmwareWithAGCOffset)
            return;
        // Always one blank, also in front of a minus sign.
        const QString reply = deviceWrite(QStringLiteral("!AOFF ") + numberToText(decibels));
        std::int32_t status = Good;
        if (!isRefused(reply, status))
            m_agcOffset = decibels; // whatever the echo says
        finish(status);
        emit AGCOffsetChange(m_agcOffset);
    });
}

bool clsKeldoX::Bypass()
{
    const auto unit = keepAlive();
    bool on = false;
    if (!PortIsOpen())
        return on;
    reportAndEnd("clsKeldoX.Get Bypass", [&] {
        const QString reply = deviceWrite(QStringLiteral("*ACT_?"));
        std::int32_t status = Good;
        if (reply == QLatin1String("1") || reply == QLatin1String("0")) {
            on = m_bypass = reply == QLatin1String("1");
        } else {
            status = BadReply;
            complain(nullptr);
        }
        keep(status);
        emit BypassChange(m_bypass);
        finish(status);
    });
    return on;
}

void clsKeldoX::setBypass(bool on)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let Bypass", [&] {
        if (!PortIsOpen())
            return;
        const QString reply = deviceWrite(QStringLiteral("*ACT_ ") + onOff(on));
        const std::int32_t status =
            judgeSwitch(reply, on, "device did not respond correctly to BYP command !", m_bypass);
        emit BypassChange(m_bypass);
        finish(status);
    });
}

bool clsKeldoX::HasAdjustableInputLimiting()
{
    return PortIsOpen() && firmwareNumber() >= firstFirmwareWithInputLimiting;
}

std::int16_t clsKeldoX::InputLimitingMode()
{
    const auto unit = keepAlive();
    if (!HasAdjustableInputLimiting())
        return 0;
    reportAndEnd("clsKeldoX.Get InputLimitingMode", [this] {
        const std::int32_t status =
            ask({"InputLimitMode?", isNumeric,
                 "The device did not respond correctly to an input limiting mode command query."},
                [this](double number) { m_inputLimitingMode = toInt16(number); });
        if (status == Good)
            emit InputLimitingModeChange(m_inputLimitingMode);
        finish(status);
    });
    return m_inputLimitingMode;
}

void clsKeldoX::setInputLimitingMode(std::int16_t mode)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let InputLimitingMode", [&] {
        if (!HasAdjustableInputLimiting())
            return;
        const QString reply =
            deviceWrite(QStringLiteral("InputLimitMode") + numberToTextWithBlank(mode));
        std::int32_t status = BadReply;
        if (isNumeric(reply) && leadingNumber(ParseData(reply)) == mode) {
            status = keep(Good);
            m_inputLimitingMode = mode;
        } else if (!isRefused(reply, status)) {
            keep(BadReply);
            // Two messages that differ by the full stop: with it the unit chose another mode,
            // without it the unit did not answer with a mode at all.
            complain(
                isNumeric(reply)
                    ? "The device did not respond correctly to an input limiting mode command."
                    : "The device did not respond correctly to an input limiting mode command");
        }
        emit InputLimitingModeChange(m_inputLimitingMode);
        finish(status);
    });
}
