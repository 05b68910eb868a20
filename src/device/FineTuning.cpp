// Reading and setting clicks, and the calibrated mode of three generations of units.
#include "device/FineTuning.h"

#include "core/TextNumbers.h"
#include "device/Firmware.h"

#include <utility>

static bool endsWithClicks(const QString &reply)
{
    return reply.endsWith(QLatin1String("clicks"));
}

std::int16_t FineTuning::askClicks(const char *source, const char *command, const char *message,
                                   std::int16_t &member)
{
    return m_exchange.query({.source = source,
                             .command = command,
                             .isGood = endsWithClicks,
                             .message = message,
                             .isOffered = [this] { return m_options.knowsPelltrim(); },
                             .event = [this] { emit m_events.ZNChange(m_pelltrim); },
                             .announcing = Exchange::StatusThenEvent,
                             .unasked = Exchange::GivesLastReading,
                             .mayBeRefused = true,
                             .value = shownValue(member)},
                            member);
}

std::int32_t FineTuning::writeClicks(const char *source, const char *command, std::int16_t clicks,
                                     const char *message, std::int16_t &member)
{
    const auto keepClicks = [this, &member](const QString &reply) {
        if (!endsWithClicks(reply))
            return false;
        ReplyText::take(reply, member);
        // What leaving calibrated mode goes back to, on units that emulate it.
        if (!m_calMode)
            m_rememberedPelltrim = m_pelltrim;
        return true;
    };
    return m_exchange.set(
        {.source = source,
         .line = QString::fromLatin1(command) + QLatin1Char(' ') + numberToText(clicks),
         .isGood = keepClicks,
         .message = message,
         .isOffered = [this] { return m_options.knowsPelltrim(); },
         .event = [this] { emit m_events.ZNChange(m_pelltrim); },
         .announcing = Exchange::StatusThenEvent,
         .value = shownValue(member)});
}

// The calibration value is shown nowhere by itself.
std::optional<UnitValue> FineTuning::shownValue(const std::int16_t &member) const
{
    return &member == &m_pelltrim ? std::optional(UnitValue::Pelltrim) : std::nullopt;
}

void FineTuning::forgetFineTuning()
{
    m_pelltrim = m_pelltrimCal = unknownClicks;
    m_rememberedPelltrim = 0;
    m_calMode = false;
}

std::int16_t FineTuning::Pelltrim()
{
    return askClicks("clsKeldoX.Get Pelltrim", "*ZNSE?",
                     "The device did not respond correctly to an 'Pelltrim setting' query.",
                     m_pelltrim);
}

void FineTuning::setPelltrim(std::int16_t clicks)
{
    writePelltrim(clicks);
}

std::int32_t FineTuning::writePelltrim(std::int16_t clicks)
{
    return writeClicks("clsKeldoX.Let Pelltrim", "*ZNSE", clicks,
                       "The device did not respond correctly to an 'Pelltrim setting' command.",
                       m_pelltrim);
}

std::int16_t FineTuning::PelltrimCal()
{
    return m_exchange.setup().initialized ? m_pelltrimCal : askCalibration();
}

std::int16_t FineTuning::askCalibration()
{
    return askClicks(
        "clsKeldoX.Get PelltrimCal", "*ZNCA?",
        "The device did not respond correctly to an 'Pelltrim calibration setting' query.",
        m_pelltrimCal);
}

void FineTuning::setPelltrimCal(std::int16_t clicks)
{
    writeClicks("clsKeldoX.Let PelltrimCal", "!ZNCA", clicks,
                "The device did not respond correctly to an 'Pelltrim cal' command.",
                m_pelltrimCal);
}

void FineTuning::readFineTuning()
{
    const auto unit = m_exchange.keepAlive();
    if (!m_options.knowsPelltrim())
        return;
    askCalibration();
    const std::int16_t clicks = Pelltrim();
    // In an emulated calibrated mode that is the calibration value: what to go back to stays, also
    // when the operator has been on another channel.
    if (!m_calMode)
        m_rememberedPelltrim = clicks;
}

bool FineTuning::ZN_calMode()
{
    const auto tellsMode = [this] {
        return m_options.knowsPelltrim() &&
               m_options.firmwareNumber() > Firmware::lastWithEmulatedCalMode;
    };
    return m_exchange.query({.source = "clsKeldoX.Get ZN_calMode",
                             .command = "*ZNCM?",
                             .isGood = ReplyText::isSwitch,
                             .isOffered = tellsMode,
                             .event = [this] { emit m_events.ZNcalModeChange(m_calMode); },
                             .unasked = Exchange::GivesLastReading,
                             .mayBeRefused = true,
                             .value = UnitValue::CalMode},
                            m_calMode);
}

void FineTuning::setZN_calMode(bool on)
{
    m_exchange.run("clsKeldoX.Let ZN_calMode", [&] {
        if (!m_options.knowsPelltrim())
            return;
        const std::int32_t status = changeMode(on);
        emit m_events.ZNcalModeChange(m_calMode);
        m_exchange.finish(status);
    });
}

// Three generations of units: the oldest know no calibrated mode, the next have it emulated here
// with two settings, the rest do it themselves.
std::int32_t FineTuning::changeMode(bool on)
{
    const double firmware = m_options.firmwareNumber();
    if (firmware > Firmware::lastWithEmulatedCalMode) {
        const Reply reply = m_exchange.send(QStringLiteral("*ZNCM ") + ReplyText::onOff(on));
        const std::int32_t status = m_exchange.judge(
            reply, Exchange::isGood(reply, ReplyText::echoOf(on, m_calMode)), nullptr);
        m_exchange.judgeConfirmation(UnitValue::CalMode, status, reply.complete);
        return status;
    }
    if (firmware <= Firmware::lastWithoutCalMode)
        return m_exchange.lastStatus();
    const bool before = std::exchange(m_calMode, on);
    const std::int32_t status = writePelltrim(on ? PelltrimCal() : m_rememberedPelltrim);
    if (status != UnitEvents::Good) // the unit has stayed in its mode
        m_calMode = before;
    return status;
}
