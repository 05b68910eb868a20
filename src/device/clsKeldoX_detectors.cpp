// Below the operator's controls, for service and calibration: the unit's power detectors, the AGC
// deadband and the AGC table in the unit's memory.
#include "device/clsKeldoX.h"

#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

namespace {

constexpr double firstFirmwareWithDetectorQuery = 2.33;

bool isErrorWord(const QString &reply)
{
    return reply == QLatin1String("UNRECOGNIZED COMMAND") || reply == QLatin1String("TIMED OUT");
}

bool beginsWithAdd(const QString &reply)
{
    return reply.startsWith(QLatin1String("Add"));
}

// The first five characters of the error words tell them from a number.
bool isTableData(const QString &reply)
{
    constexpr double largestByte = 255;
    return !reply.startsWith(QLatin1String("TIMED")) && !reply.startsWith(QLatin1String("UNREC")) &&
           isNumeric(reply) && numericValue(reply) >= 0 && numericValue(reply) <= largestByte;
}

bool hasNumber(const QString &reply)
{
    return !isErrorWord(reply) && isNumeric(clsKeldoX::ParseData(reply));
}

} // namespace

// Older units have no detector query: the reading goes through the scratch address one past the
// AGC table, whose byte is put back afterwards.
std::int32_t clsKeldoX::DetectorReading()
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.DetectorReading", [this] {
        if (firmwareNumber() >= firstFirmwareWithDetectorQuery)
            askDetector("DETA?", m_detectorReading);
        else if (PortIsOpen())
            readDetectorThroughTable();
    });
    return m_detectorReading;
}

std::int32_t clsKeldoX::InputDetectorReading()
{
    reportAndEnd("clsKeldoX.InputDetectorReading",
                 [this] { askDetector("DETB?", m_inputDetectorReading); });
    return m_inputDetectorReading;
}

void clsKeldoX::askDetector(const char *command, std::int32_t &reading)
{
    if (PortIsOpen())
        finish(
            ask({command, hasNumber, nullptr}, [&](double number) { reading = toInt32(number); }));
}

void clsKeldoX::readDetectorThroughTable()
{
    setAGCaddr(LastAddr);
    // A refused address: the byte would be that of another one, and put back in the wrong place.
    if (lastStatus() != Good)
        return;
    const auto remembered = askAGCdata();
    // Without the byte there would be nothing to put back: then nothing is stored over it.
    if (!remembered)
        return;
    const std::int32_t status = storeADC(LastAddr, m_detectorReading);
    setAGCaddr(LastAddr);
    setAGCdata(*remembered);
    finish(status);
}

std::int16_t clsKeldoX::deadBand()
{
    if (!PortIsOpen())
        return 0;
    reportAndEnd("clsKeldoX.Get deadBand", [this] {
        finish(ask(
            {"*DBND?", isNumeric, "The device did not respond correctly to a 'deadband' query."},
            [this](double number) { m_deadBand = toInt16(number); }));
    });
    return m_deadBand;
}

void clsKeldoX::setDeadBand(std::int16_t value)
{
    writeFactory("clsKeldoX.Let deadBand", QStringLiteral("!DBND"), value);
}

std::int16_t clsKeldoX::StartOfAGCTable()
{
    if (!PortIsOpen())
        return 0;
    reportAndEnd("clsKeldoX.Get StartOfAGCTable", [this] {
        finish(ask({"*ATAB?", hasNumber, nullptr},
                   [this](double number) { m_startOfAGCTable = toInt16(number); }));
    });
    return m_startOfAGCTable;
}

// The two blanks of the source have always been there and are kept.
void clsKeldoX::setAGCaddr(std::int16_t address)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let  AGCaddr", [&] {
        if (!PortIsOpen())
            return;
        const QString value = numberToTextWithBlank(address);
        const QString reply = deviceWrite(QStringLiteral("!SRCE") + value);
        finish(judgeService(reply, reply.endsWith(value),
                            "The device did not respond correctly to a 'SRCE' command."));
    });
}

void clsKeldoX::setAGCdata(std::int16_t byte)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let AGCdata", [&] {
        if (!PortIsOpen())
            return;
        const QString reply = deviceWrite(QStringLiteral("!WDAT") + numberToTextWithBlank(byte));
        finish(judgeService(reply, beginsWithAdd(reply),
                            "The device did not respond correctly to a 'WDAT' command."));
    });
}

std::int16_t clsKeldoX::AGCdata()
{
    static_cast<void>(askAGCdata());
    return PortIsOpen() ? m_agcData : std::int16_t{0};
}

// Nothing when the unit did not tell.
std::optional<std::int16_t> clsKeldoX::askAGCdata()
{
    std::optional<std::int16_t> byte;
    reportAndEnd("clsKeldoX.Get AGCdata", [&] {
        if (!PortIsOpen())
            return;
        const std::int32_t status = ask(
            {"*DATA?", isTableData, "The device did not respond correctly to an AGC DATA query."},
            [this](double number) { m_agcData = toInt16(number); });
        if (status == Good)
            byte = m_agcData;
        finish(status);
    });
    return byte;
}

std::int32_t clsKeldoX::StoreADCvalue(std::int16_t value)
{
    std::int32_t reading = 0;
    reportAndEnd("clsKeldoX.StoreADCvalue", [&] {
        if (PortIsOpen())
            finish(storeADC(value, reading));
    });
    return reading;
}

// The unit stores its present detector value at the address and tells it as the last number of its
// reply.
std::int32_t clsKeldoX::storeADC(std::int16_t address, std::int32_t &reading)
{
    const QString reply = deviceWrite(QStringLiteral("!ATAB") + numberToTextWithBlank(address));
    const std::int32_t status = judgeService(
        reply, beginsWithAdd(reply), "The device did not respond correctly to ATAB command.");
    if (status == Good)
        reading = toInt32(leadingNumber(ParseData(reply.section(QLatin1Char(' '), -1))));
    return status;
}

// Service commands are judged by their reply's words; a refusal asks for the password.
std::int32_t clsKeldoX::judgeService(const QString &reply, bool isGood, const char *message)
{
    return keep(isGood ? Good : judgeFailure(reply, message));
}
