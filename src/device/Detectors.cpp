// Reading detectors, directly and through the AGC table, and the table's bytes.
#include "device/Detectors.h"

#include "core/TextNumbers.h"
#include "device/Firmware.h"

namespace {

bool beginsWithAdd(const QString &reply)
{
    return reply.startsWith(QLatin1String("Add"));
}

bool isTableData(const QString &reply)
{
    constexpr double largestByte = 255;
    return isNumeric(reply) && numericValue(reply) >= 0 && numericValue(reply) <= largestByte;
}

// The unit's error words have none.
bool hasNumber(const QString &reply)
{
    return isNumeric(ReplyText::numberPart(reply));
}

} // namespace

std::int32_t Detectors::DetectorReading()
{
    const auto unit = m_exchange.keepAlive();
    static constexpr char source[] = "clsKeldoX.DetectorReading";
    if (m_options.firmwareNumber() >= Firmware::firstWithDetectorQuery)
        return askDetector(source, "DETA?", m_detectorReading);
    m_exchange.run(source, [this] { readDetectorThroughTable(); });
    return m_detectorReading;
}

std::int32_t Detectors::InputDetectorReading()
{
    return askDetector("clsKeldoX.InputDetectorReading", "DETB?", m_inputDetectorReading);
}

std::int32_t Detectors::askDetector(const char *source, const char *command, std::int32_t &reading)
{
    return m_exchange.query({.source = source,
                             .command = command,
                             .isGood = hasNumber,
                             .unasked = Exchange::GivesLastReading},
                            reading);
}

// Older units have no detector query: the reading goes through the scratch address one past the
// AGC table, whose byte is put back afterwards.
void Detectors::readDetectorThroughTable()
{
    setAGCaddr(LastAddr);
    // A refused address: the byte would be that of another one, and put back in the wrong place.
    if (m_exchange.lastStatus() != UnitEvents::Good)
        return;
    const auto remembered = askAGCdata();
    // Without the byte there would be nothing to put back: then nothing is stored over it.
    if (!remembered)
        return;
    const std::int32_t status = storeADC(LastAddr, m_detectorReading);
    setAGCaddr(LastAddr);
    setAGCdata(*remembered);
    m_exchange.finish(status);
}

std::int16_t Detectors::deadBand()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get deadBand",
         .command = "*DBND?",
         .isGood = isNumeric,
         .message = "The device did not respond correctly to a 'deadband' query."},
        m_deadBand);
}

void Detectors::setDeadBand(std::int16_t value)
{
    m_exchange.run("clsKeldoX.Let deadBand", [&] {
        m_exchange.send(QStringLiteral("!DBND") + numberToTextWithBlank(value));
        m_exchange.finish(UnitEvents::Good); // not judged
    });
}

std::int16_t Detectors::StartOfAGCTable()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get StartOfAGCTable", .command = "*ATAB?", .isGood = hasNumber},
        m_startOfAGCTable);
}

// The two blanks of the source have always been there and are kept.
void Detectors::setAGCaddr(std::int16_t address)
{
    const QString value = numberToTextWithBlank(address);
    m_exchange.set({.source = "clsKeldoX.Let  AGCaddr",
                    .line = QStringLiteral("!SRCE") + value,
                    .isGood = [&](const QString &reply) { return reply.endsWith(value); },
                    .message = "The device did not respond correctly to a 'SRCE' command."});
}

void Detectors::setAGCdata(std::int16_t byte)
{
    m_exchange.set({.source = "clsKeldoX.Let AGCdata",
                    .line = QStringLiteral("!WDAT") + numberToTextWithBlank(byte),
                    .isGood = beginsWithAdd,
                    .message = "The device did not respond correctly to a 'WDAT' command."});
}

std::int16_t Detectors::AGCdata()
{
    const auto unit = m_exchange.keepAlive();
    static_cast<void>(askAGCdata());
    return m_exchange.PortIsOpen() ? m_agcData : std::int16_t{0};
}

// Nothing when the unit did not tell.
std::optional<std::int16_t> Detectors::askAGCdata()
{
    std::optional<std::int16_t> byte;
    m_exchange.query({.source = "clsKeldoX.Get AGCdata",
                      .command = "*DATA?",
                      .isGood = isTableData,
                      .message = "The device did not respond correctly to an AGC DATA query.",
                      .event = [&] { byte = m_agcData; },
                      .announcing = Exchange::GoodEventThenStatus},
                     m_agcData);
    return byte;
}

std::int32_t Detectors::StoreADCvalue(std::int16_t address)
{
    std::int32_t reading = 0;
    m_exchange.run("clsKeldoX.StoreADCvalue",
                   [&] { m_exchange.finish(storeADC(address, reading)); });
    return reading;
}

// The unit stores its present detector value at the address and tells it as the last number of its
// reply.
std::int32_t Detectors::storeADC(std::int16_t address, std::int32_t &reading)
{
    const Reply reply = m_exchange.send(QStringLiteral("!ATAB") + numberToTextWithBlank(address));
    // A number beyond the range is a bad reply, not a failure that would leave the scratch byte.
    const auto takeReading = [&reading](const QString &text) {
        if (!beginsWithAdd(text))
            return false;
        ReplyText::take(text.section(QLatin1Char(' '), -1), reading);
        return true;
    };
    return m_exchange.judge(reply, Exchange::isGood(reply, takeReading),
                            "The device did not respond correctly to ATAB command.");
}
