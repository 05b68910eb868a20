// What the unit is and what it can do: firmware revision, option words, availability flags, bus
// address and lock state.
#include "device/clsKeldoX.h"

#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

#include <cmath>
#include <limits>

namespace {

constexpr double firstFirmwareWithOptions = 2.0;
constexpr double lastFirmwareWithoutBypass = 1.6;
constexpr double lastFirmwareWithOldOptionC = 3.37;
constexpr double firstFirmwareWithAGCOffset = 2.0;
constexpr double lastFirmwareWithAGCOffset = 3.17;

// Bits of option word A.
constexpr std::int32_t agcBit = 2;
constexpr std::int32_t inputAttenBit = 8;
constexpr std::int32_t attenBits = 23; // 1, 2, 4 and 16
// Bit of option word C.
constexpr std::int32_t pelltrimBit = 2;
constexpr std::int32_t withoutPelltrimBit = 253;

constexpr std::int32_t bypassBit = 1;
constexpr std::int32_t allOptions = -1;

bool isErrorWord(const QString &reply)
{
    return reply == QLatin1String("TIMED OUT") || reply == QLatin1String("UNRECOGNIZED COMMAND");
}

} // namespace

// Gives the raw reply so that a caller can see the unit's error word, while the member stays
// empty and the firmware number 0.
QString clsKeldoX::FirmwareRevision()
{
    const auto unit = keepAlive();
    if (setup().initialized)
        return m_firmware;
    QString reply;
    reportAndEnd("clsKeldoX.Get FirmwareRevision", [&] {
        if (!PortIsOpen())
            return;
        reply = deviceWrite(QStringLiteral("*REVISION?"));
        m_firmware = isErrorWord(reply) ? QString() : reply;
    });
    return reply;
}

double clsKeldoX::firmwareNumber()
{
    const auto unit = keepAlive();
    if (m_firmware.isEmpty() && !setup().initialized && !setup().initializing)
        FirmwareRevision();
    return leadingNumber(m_firmware.right(4));
}

std::int32_t clsKeldoX::AOPT()
{
    const auto unit = keepAlive();
    if (!setup().initialized) {
        if (!PortIsOpen())
            return 0;
        askAOPT();
    }
    return m_optionA;
}

void clsKeldoX::askAOPT()
{
    askOptions("clsKeldoX.Get AOPT", "*AOPT?", m_optionA);
}

void clsKeldoX::setAOPT(std::int32_t word)
{
    writeFactory("clsKeldoX.Let AOPT", QStringLiteral("!AOPT"), word);
}

std::int32_t clsKeldoX::COPT()
{
    const auto unit = keepAlive();
    if (!setup().initialized) {
        if (!PortIsOpen())
            return 0;
        askCOPT();
    }
    return m_optionC;
}

bool clsKeldoX::hasNewOptionC()
{
    return firmwareNumber() > lastFirmwareWithOldOptionC;
}

void clsKeldoX::askCOPT()
{
    const auto unit = keepAlive();
    askOptions("clsKeldoX.Get COPT", hasNewOptionC() ? "OPTC?" : "*BOPT?", m_optionC);
}

void clsKeldoX::setCOPT(std::int32_t word)
{
    const auto unit = keepAlive();
    writeFactory("clsKeldoX.Let COPT",
                 hasNewOptionC() ? QStringLiteral("OPTC") : QStringLiteral("!BOPT"), word);
}

void clsKeldoX::askOptions(const char *source, const char *command, std::int32_t &word)
{
    const auto unit = keepAlive();
    reportAndEnd(source, [&] {
        if (!PortIsOpen())
            return;
        if (firmwareNumber() < firstFirmwareWithOptions) {
            word = 0;
            return;
        }
        const QString reply = deviceWrite(QString::fromLatin1(command));
        std::int32_t status = Good;
        try {
            if (isNumeric(reply))
                word = toInt32(leadingNumber(ParseData(reply)));
            else if (reply.startsWith(QLatin1String("UNRECOGNIZED COMMAND")))
                word = 0; // normal for firmware without option words
            else
                status = BadReply;
        } catch (const RunTimeError &) {
            status = BadReply;
        }
        keep(status);
        if (status == BadReply) {
            word = allOptions;
            if (setup().reading)
                setup().isGood = false;
            complain("The device did not respond correctly to an 'options' query.\r\n"
                     "This is normal for some units with old firmware.");
        }
        finish(status);
    });
}

// Asks the unit while it has not been initialized and keeps the word. On a closed port the
// untouched word is tested: before the first query every option reads as present.
bool clsKeldoX::optionBit(std::int32_t mask, std::int32_t &word, void (clsKeldoX::*asks)())
{
    const auto unit = keepAlive();
    if (!setup().initialized && PortIsOpen())
        (this->*asks)();
    return (word & mask) != 0;
}

bool clsKeldoX::HasAGC()
{
    return optionBit(agcBit, m_optionA, &clsKeldoX::askAOPT);
}

void clsKeldoX::setHasAGC(bool fitted)
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return;
    writeFactory("clsKeldoX.Let HasAGC", QStringLiteral("!AGC"), fitted ? 1 : 0);
    askAOPT();
}

bool clsKeldoX::HasAtten()
{
    return optionBit(attenBits, m_optionA, &clsKeldoX::askAOPT);
}

bool clsKeldoX::HasInputAtten()
{
    return optionBit(inputAttenBit, m_optionA, &clsKeldoX::askAOPT);
}

bool clsKeldoX::HasAGCOffset()
{
    const auto unit = keepAlive();
    const bool agc = HasAGC();
    const double firmware = firmwareNumber();
    return agc && firmware >= firstFirmwareWithAGCOffset && firmware <= lastFirmwareWithAGCOffset;
}

bool clsKeldoX::HasPelltrim()
{
    return optionBit(pelltrimBit, m_optionC, &clsKeldoX::askCOPT);
}

// The result overwrites the whole cached word with all ones or all zeros. That is harmless: only
// the fine-tuning bit is ever read from it.
void clsKeldoX::setHasPelltrim(bool fitted)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let HasPelltrim", [&] {
        if (!PortIsOpen())
            return;
        if (!setup().initialized)
            askCOPT();
        setCOPT(fitted ? m_optionC | pelltrimBit : m_optionC & withoutPelltrimBit);
        askCOPT();
        m_hasPelltrim = (m_optionC & pelltrimBit) != 0;
        m_optionC = m_hasPelltrim ? -1 : 0;
    });
}

bool clsKeldoX::HasBypass()
{
    const auto unit = keepAlive();
    if (!setup().initialized && PortIsOpen())
        askHasBypass();
    return m_hasBypass;
}

void clsKeldoX::askHasBypass()
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Get HasBypass", [this] {
        m_hasBypass = false;
        if (firmwareNumber() > lastFirmwareWithoutBypass) {
            const QString reply = deviceWrite(QStringLiteral("*BYP_?"));
            const double number = leadingNumber(reply);
            // What fits no 16-bit number tells of no bypass either; nothing is reported here.
            if (std::abs(number) <= std::numeric_limits<std::int16_t>::max())
                m_hasBypass = (toInt16(number) & bypassBit) != 0;
            if (setup().reading && reply.isEmpty())
                setup().isGood = false;
        }
        finish(Good);
    });
}

void clsKeldoX::setHasBypass(bool fitted)
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return;
    writeFactory("clsKeldoX.Let HasBypass", QStringLiteral("!BYP_"), fitted ? 1 : 0);
    askHasBypass();
}

// With the port open, an object that is not initialized forgets its address when asked: what the
// unit answers to is not known then.
std::int16_t clsKeldoX::addr()
{
    if (!PortIsOpen())
        return 0;
    if (!setup().initialized)
        m_addr = 0;
    return m_addr;
}

void clsKeldoX::setAddr(std::int16_t address)
{
    const auto unit = keepAlive();
    // The search gives units their addresses while their ports are closed.
    if (!PortIsOpen()) {
        m_addr = address;
        return;
    }
    reportAndEnd("clsKeldoX.Let addr", [&] {
        const QString reply = deviceWrite(QStringLiteral("!ADDR") + numberToTextWithBlank(address));
        if (isNumeric(reply) && leadingNumber(ParseData(reply)) == address) {
            keep(Good);
            m_addr = address;
            return;
        }
        keep(BadReply);
        complain("The device did not respond correctly to an address command.");
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
