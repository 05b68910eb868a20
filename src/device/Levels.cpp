// Reading and setting the unit's levels.
#include "device/Levels.h"

#include "core/TextNumbers.h"
#include "device/Firmware.h"

static bool endsWithdB(const QString &reply)
{
    return reply.endsWith(QLatin1String("dB"));
}

void Levels::forgetLevels()
{
    m_agc = m_bypass = false;
    m_atten = m_attenStep = m_inputAtten = m_agcOffset = 0;
    m_maxAtten = m_inputLimitingMode = 0;
}

bool Levels::AGC()
{
    return m_exchange.query({.source = "clsKeldoX.Get AGC",
                             .command = "*AGC_?",
                             .isGood = ReplyText::isSwitch,
                             .message = "The device did not respond correctly to an AGC query.",
                             .event = [this] { emit m_events.AGCChange(m_agc); },
                             .value = UnitValue::AGC},
                            m_agc);
}

void Levels::setAGC(bool on)
{
    m_exchange.set(
        {.source = "clsKeldoX.Let AGC",
         .line = QStringLiteral("*AGC_ ") + ReplyText::onOff(on),
         .isGood = ReplyText::echoOf(on, m_agc),
         .message = "The device did not respond correctly to an AGC command.",
         .isOffered = [this] { return m_options.firmwareNumber() > Firmware::lastWithoutAGC; },
         .event = [this] { emit m_events.AGCChange(m_agc); },
         .value = UnitValue::AGC});
}

// No StatusChange here: a bad reply is normal while AGC runs and must not turn the light red.
double Levels::atten()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get atten",
         .command = "*ATTN?",
         .isGood = endsWithdB,
         .message = "The device did not respond correctly to an 'attenuation' query.\r\n"
                    "NOTE - This is normal if AGC is on.",
         .event = [this] { emit m_events.AttenChange(m_atten); },
         .announcing = Exchange::EventWithoutStatus,
         .value = UnitValue::Attenuation},
        m_atten);
}

void Levels::setAtten(double decibels)
{
    m_exchange.set({.source = "clsKeldoX.Let atten",
                    .line = QStringLiteral("*ATTN") + numberToTextWithBlank(decibels),
                    .isGood = ReplyText::echoOf(decibels, m_atten),
                    .message = "The device did not respond correctly to an attenuation command.",
                    .event = [this] { emit m_events.AttenChange(m_atten); },
                    .value = UnitValue::Attenuation});
}

std::int16_t Levels::MaxAtten()
{
    return m_exchange.reading("clsKeldoX.Get MaxAtten", m_maxAtten, [this] {
        if (m_options.firmwareNumber() <= Firmware::lastWithoutMaxAtten) {
            m_maxAtten = m_options.maxAttenByOptions();
            return;
        }
        const Reply reply = m_exchange.send(QStringLiteral("*MXAT?"));
        const bool good = Exchange::isGood(reply, [this](const QString &text) {
            if (ReplyText::isNotUnderstood(text))
                return false;
            m_maxAtten = toInt16(leadingNumber(text)); // any other text is 0 dB
            return true;
        });
        m_exchange.finish(m_exchange.judge(
            reply, good, "The device did not respond correctly to a 'max attenuation' query.",
            false));
    });
}

// A unit that cannot tell its step simply has step 0; that is no error.
double Levels::attenStep()
{
    return m_exchange.reading("clsKeldoX.Get attenStep", m_attenStep, [this] {
        const QString reply = m_exchange.send(QStringLiteral("*ATT STEP? ")).whole();
        m_attenStep = reply.endsWith(QLatin1String("dB steps")) ? ReplyText::numberIn(reply) : 0;
        m_exchange.finish(UnitEvents::Good);
    });
}

double Levels::InputAtten()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get InputAtten",
         .command = "INPUT ATTN?",
         .isGood = endsWithdB,
         .message = "The device did not respond correctly to an 'input attenuation' query.",
         .announcing = Exchange::EventWithoutStatus,
         .value = UnitValue::InputAttenuation},
        m_inputAtten);
}

// The one setting without a password path, on purpose: a refusal is a bad reply like any other.
void Levels::setInputAtten(double decibels)
{
    m_exchange.set(
        {.source = "clsKeldoX.Let InputAtten",
         .line = QStringLiteral("INPUT ATTN") + numberToTextWithBlank(decibels),
         .isGood = ReplyText::echoOf(decibels, m_inputAtten),
         .message = "The device did not respond correctly to an input attenuation command.",
         .event = [this] { emit m_events.InputAttenChange(m_inputAtten); },
         .mayBeRefused = false,
         .value = UnitValue::InputAttenuation});
}

bool Levels::offersOffset()
{
    return m_options.firmwareNumber() >= Firmware::firstWithAGCOffset;
}

// The reverse of the usual order, on purpose: the status first, then the value.
double Levels::attenOffset()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get attenOffset",
         .command = "*AOFF?",
         .isGood = endsWithdB,
         .message = "The device did not respond correctly to an 'attenuation offset' query.",
         .isOffered = [this] { return offersOffset(); },
         .event = [this] { emit m_events.AGCOffsetChange(m_agcOffset); },
         .announcing = Exchange::StatusThenEvent,
         .value = UnitValue::AGCOffset},
        m_agcOffset);
}

void Levels::setAttenOffset(double decibels)
{
    const auto keepUnlessRefused = [this, decibels](const QString &reply) {
        if (ReplyText::isRefused(reply))
            return false;
        m_agcOffset = decibels; // whatever the echo says
        return true;
    };
    m_exchange.set({.source = "clsKeldoX.Let attenOffset",
                    // Always one blank, also in front of a minus sign.
                    .line = QStringLiteral("!AOFF ") + numberToText(decibels),
                    .isGood = keepUnlessRefused,
                    .isOffered = [this] { return offersOffset(); },
                    .event = [this] { emit m_events.AGCOffsetChange(m_agcOffset); },
                    .announcing = Exchange::StatusThenEvent,
                    .value = UnitValue::AGCOffset});
}

// After a bad reply the reading is False while the event tells the value before.
bool Levels::Bypass()
{
    bool on = false;
    m_exchange.run("clsKeldoX.Get Bypass", [&] {
        const Reply reply = m_exchange.send(QStringLiteral("*ACT_?"));
        const bool good = Exchange::isGood(reply, [](const QString &text) {
            return text == ReplyText::onOff(true) || text == ReplyText::onOff(false);
        });
        if (good) {
            ReplyText::take(reply.text, m_bypass);
            m_exchange.confirm(UnitValue::Bypass);
        } else {
            m_exchange.doubt(UnitValue::Bypass);
        }
        on = good && m_bypass;
        const std::int32_t status = m_exchange.judge(reply, good, nullptr, false);
        emit m_events.BypassChange(m_bypass);
        m_exchange.finish(status);
    });
    return on;
}

void Levels::setBypass(bool on)
{
    m_exchange.set({.source = "clsKeldoX.Let Bypass",
                    .line = QStringLiteral("*ACT_ ") + ReplyText::onOff(on),
                    .isGood = ReplyText::echoOf(on, m_bypass),
                    .message = "device did not respond correctly to BYP command !",
                    .event = [this] { emit m_events.BypassChange(m_bypass); },
                    .value = UnitValue::Bypass});
}

bool Levels::offersInputLimiting()
{
    return m_options.firmwareNumber() >= Firmware::firstWithInputLimiting;
}

bool Levels::HasAdjustableInputLimiting()
{
    const auto unit = m_exchange.keepAlive();
    return m_exchange.PortIsOpen() && offersInputLimiting();
}

std::int16_t Levels::InputLimitingMode()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get InputLimitingMode",
         .command = "InputLimitMode?",
         .isGood = isNumeric,
         .message = "The device did not respond correctly to an input limiting mode command query.",
         .isOffered = [this] { return offersInputLimiting(); },
         .event = [this] { emit m_events.InputLimitingModeChange(m_inputLimitingMode); },
         .announcing = Exchange::GoodEventThenStatus,
         .value = UnitValue::InputLimiting},
        m_inputLimitingMode);
}

void Levels::setInputLimitingMode(std::int16_t mode)
{
    m_exchange.run("clsKeldoX.Let InputLimitingMode", [&] {
        if (!offersInputLimiting())
            return;
        const Reply reply =
            m_exchange.send(QStringLiteral("InputLimitMode") + numberToTextWithBlank(mode));
        const bool good = ReplyText::isNumber(reply.whole(), mode);
        if (good)
            m_inputLimitingMode = mode;
        // Two messages that differ by the full stop: with it the unit chose another mode,
        // without it the unit did not answer with a mode at all.
        const std::int32_t status = m_exchange.judge(
            reply, good,
            isNumeric(reply.text)
                ? "The device did not respond correctly to an input limiting mode command."
                : "The device did not respond correctly to an input limiting mode command");
        m_exchange.judgeConfirmation(UnitValue::InputLimiting, status, reply.complete);
        emit m_events.InputLimitingModeChange(m_inputLimitingMode);
        m_exchange.finish(status);
    });
}
