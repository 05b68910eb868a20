// Asking the unit for its revision and its option words, and reading the words' bits.
#include "device/Options.h"

#include "core/TextNumbers.h"
#include "device/Firmware.h"
#include "platform/RunTimeError.h"

#include <cmath>
#include <limits>

// Gives the raw reply so that a caller can see the unit's error word, while the member stays
// empty and the firmware number 0.
QString Options::FirmwareRevision()
{
    const auto unit = m_exchange.keepAlive();
    if (m_exchange.setup().initialized)
        return m_firmware;
    QString reply;
    m_exchange.run("clsKeldoX.Get FirmwareRevision", [&] {
        reply = m_exchange.send(QStringLiteral("*REVISION?")).text;
        m_firmware = ReplyText::isErrorWord(reply) ? QString() : reply;
    });
    return reply;
}

double Options::firmwareNumber()
{
    const auto unit = m_exchange.keepAlive();
    const Setup &setup = m_exchange.setup();
    if (m_firmware.isEmpty() && !setup.initialized && !setup.initializing)
        FirmwareRevision();
    return leadingNumber(m_firmware.right(4));
}

void Options::rereadFirmware()
{
    const auto unit = m_exchange.keepAlive();
    m_firmware.clear();
    FirmwareRevision();
    if (m_firmware.isEmpty())
        m_exchange.setup().miss();
}

std::int32_t Options::AOPT()
{
    const auto unit = m_exchange.keepAlive();
    const bool known = m_exchange.setup().initialized || m_exchange.PortIsOpen();
    return known ? wordA() : 0;
}

void Options::askAOPT()
{
    askOptions("clsKeldoX.Get AOPT", "*AOPT?", m_optionA);
}

void Options::setAOPT(std::int32_t word)
{
    m_exchange.writeFactory("clsKeldoX.Let AOPT", QStringLiteral("!AOPT"), word);
}

std::int32_t Options::COPT()
{
    const auto unit = m_exchange.keepAlive();
    if (!m_exchange.setup().initialized) {
        if (!m_exchange.PortIsOpen())
            return 0;
        askCOPT();
    }
    return m_optionC;
}

bool Options::hasNewOptionC()
{
    return firmwareNumber() > Firmware::lastWithOldOptionC;
}

void Options::askCOPT()
{
    const auto unit = m_exchange.keepAlive();
    askOptions("clsKeldoX.Get COPT", hasNewOptionC() ? "OPTC?" : "*BOPT?", m_optionC);
}

void Options::setCOPT(std::int32_t word)
{
    const auto unit = m_exchange.keepAlive();
    m_exchange.writeFactory("clsKeldoX.Let COPT",
                            hasNewOptionC() ? QStringLiteral("OPTC") : QStringLiteral("!BOPT"),
                            word);
}

void Options::askOptions(const char *source, const char *command, std::int32_t &word)
{
    m_exchange.run(source, [&] {
        if (firmwareNumber() < Firmware::firstWithOptions) {
            word = 0;
            return;
        }
        const Reply reply = m_exchange.send(QString::fromLatin1(command));
        const auto isWord = [&word](const QString &text) {
            if (isNumeric(text))
                ReplyText::take(text, word);
            else if (ReplyText::isNotUnderstood(text))
                word = 0; // normal for firmware without option words
            else
                return false;
            return true;
        };
        const bool good = Exchange::isGood(reply, isWord);
        if (!good) {
            word = allOptions;
            m_exchange.setup().miss();
        }
        m_exchange.finish(
            m_exchange.judge(reply, good,
                             "The device did not respond correctly to an 'options' query.\r\n"
                             "This is normal for some units with old firmware.",
                             false));
    });
}

std::int32_t Options::wordA()
{
    const auto unit = m_exchange.keepAlive();
    if (!m_exchange.setup().initialized && m_exchange.PortIsOpen())
        askAOPT();
    return m_optionA;
}

bool Options::HasAGC()
{
    return (wordA() & OptionA::agc) != 0;
}

void Options::setHasAGC(bool fitted)
{
    const auto unit = m_exchange.keepAlive();
    if (!m_exchange.PortIsOpen())
        return;
    m_exchange.writeFactory("clsKeldoX.Let HasAGC", QStringLiteral("!AGC"), fitted ? 1 : 0);
    askAOPT();
}

bool Options::HasAtten()
{
    return (wordA() & OptionA::atten) != 0;
}

bool Options::HasInputAtten()
{
    return (wordA() & OptionA::inputAtten) != 0;
}

std::int16_t Options::maxAttenByOptions()
{
    const std::int32_t word = wordA();
    if ((word & OptionA::atten50dB) != 0)
        return 50;
    return (word & OptionA::atten15dB) != 0 ? 15 : 0;
}

bool Options::HasAGCOffset()
{
    const auto unit = m_exchange.keepAlive();
    const bool agc = HasAGC();
    const double firmware = firmwareNumber();
    return agc && firmware >= Firmware::firstWithAGCOffset &&
           firmware <= Firmware::lastWithFittedAGCOffset;
}

bool Options::knowsPelltrim() const
{
    return (m_optionC & OptionC::pelltrim) != 0;
}

bool Options::HasPelltrim()
{
    const auto unit = m_exchange.keepAlive();
    if (!m_exchange.setup().initialized && m_exchange.PortIsOpen())
        askCOPT();
    return knowsPelltrim();
}

// The result overwrites the whole cached word with all ones or all zeros. That is harmless: only
// the fine-tuning bit is ever read from it.
void Options::setHasPelltrim(bool fitted)
{
    m_exchange.run("clsKeldoX.Let HasPelltrim", [&] {
        if (!m_exchange.setup().initialized)
            askCOPT();
        setCOPT(fitted ? m_optionC | OptionC::pelltrim : m_optionC & OptionC::allButPelltrim);
        askCOPT();
        m_optionC = knowsPelltrim() ? allOptions : 0;
    });
}

bool Options::HasBypass()
{
    const auto unit = m_exchange.keepAlive();
    if (!m_exchange.setup().initialized && m_exchange.PortIsOpen())
        askHasBypass();
    return m_hasBypass;
}

void Options::askHasBypass()
{
    const auto unit = m_exchange.keepAlive();
    reportAndEnd("clsKeldoX.Get HasBypass", [this] {
        m_hasBypass = false;
        if (firmwareNumber() > Firmware::lastWithoutBypass) {
            const QString reply = m_exchange.send(QStringLiteral("*BYP_?")).text;
            const double number = leadingNumber(reply);
            // What fits no 16-bit number tells of no bypass either; nothing is reported here.
            if (std::abs(number) <= std::numeric_limits<std::int16_t>::max())
                m_hasBypass = (toInt16(number) & bypassFitted) != 0;
            if (reply.isEmpty())
                m_exchange.setup().miss();
        }
        m_exchange.finish(UnitEvents::Good);
    });
}

void Options::setHasBypass(bool fitted)
{
    const auto unit = m_exchange.keepAlive();
    if (!m_exchange.PortIsOpen())
        return;
    m_exchange.writeFactory("clsKeldoX.Let HasBypass", QStringLiteral("!BYP_"), fitted ? 1 : 0);
    askHasBypass();
}
