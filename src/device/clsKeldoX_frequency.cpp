// The unit's frequency plan, and the conversions between megahertz and steps.
#include "device/clsKeldoX.h"

#include "core/ResumeNext.h"
#include "core/TextNumbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double hertzPerMegahertz = 1000000.0;
constexpr std::int32_t presetMemory = 94208; // hexadecimal 17000
constexpr std::int32_t presetEntries = 500;
constexpr double firmwareWithoutBandwidth = 1.6;

bool endsWithMHz(const QString &reply)
{
    return reply.endsWith(QLatin1String("MHz"));
}

bool endsWithHz(const QString &reply)
{
    return reply.endsWith(QLatin1String("Hz"));
}

} // namespace

double clsKeldoX::StartFreq()
{
    return setup().initialized ? m_startFreq : askStartFreq();
}

double clsKeldoX::askStartFreq()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return setup().initialized ? m_startFreq : 0;
    reportAndEnd("clsKeldoX.Get StartFreq", [this] {
        finish(ask({"*START FREQ?", endsWithMHz,
                    "The device did not respond correctly to a 'start frequency' query."},
                   [this](double number) { m_startFreq = number; }));
    });
    return m_startFreq;
}

// Read in MHz but written in Hz: the factory command is older than the query.
void clsKeldoX::setStartFreq(double megahertz)
{
    writeFactory("clsKeldoX.Let StartFreq", QStringLiteral("!SFRQ"), megahertz * hertzPerMegahertz);
}

double clsKeldoX::StopFreq()
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Get StopFreq", [this] {
        if (m_startFreq == 0)
            askStartFreq();
        if (m_maxStep == 0)
            askMaxStep();
        m_stopFreq = m_startFreq + StepsToMHz(m_maxStep);
    });
    return m_stopFreq;
}

double clsKeldoX::CenterFreq()
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Get CenterFreq", [this] {
        if (m_startFreq == 0)
            askStartFreq();
        if (m_stopFreq == 0)
            StopFreq();
        m_centerFreq = (m_stopFreq + m_startFreq) / 2;
    });
    return m_centerFreq;
}

// The member keeps the fraction of the IF; only whole megahertz are ever reported.
std::int32_t clsKeldoX::IFfreq()
{
    const auto unit = keepAlive();
    std::int32_t result = 0;
    reportAndEnd("clsKeldoX.Get IFfreq", [&] {
        if (!setup().initialized) {
            if (!PortIsOpen())
                return;
            finish(ask({"*IFRQ?", endsWithMHz,
                        "The device did not respond correctly to an 'IF frequency' query."},
                       [this](double number) {
                           static_cast<void>(toInt32(number)); // beyond the range is a bad reply
                           m_ifFreq = number;
                       }));
        }
        result = toInt32(m_ifFreq);
    });
    return result;
}

// The command's value is computed in 32 bits, as the unit holds it: above 2147 MHz it overflows.
void clsKeldoX::setIFfreq(std::int32_t megahertz)
{
    reportAndEnd("clsKeldoX.Let IFfreq", [&] {
        if (PortIsOpen())
            deviceWrite(QStringLiteral("!IFRQ") +
                        numberToTextWithBlank(toInt32(megahertz * hertzPerMegahertz)));
    });
}

// A unit that cannot tell its bandwidth has bandwidth 0; that is never reported as an error.
std::int32_t clsKeldoX::ChanBW()
{
    const auto unit = keepAlive();
    if (setup().initialized)
        return m_channelBandwidth;
    if (!PortIsOpen())
        return 0;
    reportAndEnd("clsKeldoX.Get ChanBW", [this] {
        m_channelBandwidth = 0;
        if (firmwareNumber() <= firmwareWithoutBandwidth)
            return;
        const QString reply = deviceWrite(QStringLiteral("*BNDW?"));
        if (setup().reading && reply.isEmpty())
            setup().isGood = false;
        if (isNumeric(reply)) {
            const double number = leadingNumber(ParseData(reply));
            if (std::abs(number) <= std::numeric_limits<std::int32_t>::max())
                m_channelBandwidth = toInt32(number);
        }
        finish(Good);
    });
    return m_channelBandwidth;
}

void clsKeldoX::setChanBW(std::int32_t bandwidth)
{
    writeFactory("clsKeldoX.Let ChanBW", QStringLiteral("!BNDW"), bandwidth);
}

std::int32_t clsKeldoX::ChannelSpacing()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return setup().initialized ? m_channelSpacing : 0;
    reportAndEnd("clsKeldoX.Get ChannelSpacing", [this] {
        finish(ask({"*CHAN SPACE?", endsWithHz,
                    "The device did not respond correctly to a 'channel spacing' query."},
                   [this](double number) { m_channelSpacing = toInt32(number); }));
    });
    return m_channelSpacing;
}

void clsKeldoX::setChannelSpacing(std::int32_t hertz)
{
    writeFactory("clsKeldoX.Let ChannelSpacing", QStringLiteral("!CHSP"), hertz);
}

std::int32_t clsKeldoX::MaxStep()
{
    return setup().initialized ? m_maxStep : askMaxStep();
}

std::int32_t clsKeldoX::askMaxStep()
{
    const auto unit = keepAlive();
    if (!PortIsOpen())
        return setup().initialized ? m_maxStep : 0;
    reportAndEnd("clsKeldoX.Get MaxStep", [this] {
        const auto isGood = [](const QString &reply) {
            return isNumeric(reply) && numericValue(reply) > 0;
        };
        finish(ask(
            {"*MAX STEP?", isGood, "The device did not respond correctly to a 'max step' query."},
            [this](double number) { m_maxStep = toInt32(number); }));
    });
    return m_maxStep;
}

void clsKeldoX::setMaxStep(std::int32_t steps)
{
    writeFactory("clsKeldoX.Let MaxStep", QStringLiteral("!MXST"), steps);
}

std::int16_t clsKeldoX::preScaler()
{
    const auto unit = keepAlive();
    std::int16_t divisor = 0;
    if (!PortIsOpen())
        return divisor;
    reportAndEnd("clsKeldoX.Get preScaler", [&] {
        finish(ask(
            {"*PRSC?", isNumeric, "The device did not respond correctly to a 'prescaler' query."},
            [&](double number) { divisor = toInt16(number); }));
    });
    return divisor;
}

void clsKeldoX::setPreScaler(std::int16_t divisor)
{
    if (divisor == 64 || divisor == 128)
        writeFactory("clsKeldoX.Let preScaler", QStringLiteral("!PRSC"), divisor);
}

double clsKeldoX::MHzToSteps(double megahertz)
{
    const auto unit = keepAlive();
    if (m_channelSpacing < 1)
        ChannelSpacing();
    return m_channelSpacing < 1 ? 0 : megahertz * hertzPerMegahertz / m_channelSpacing;
}

double clsKeldoX::StepsToMHz(std::int32_t steps)
{
    const auto unit = keepAlive();
    if (m_channelSpacing < 1)
        ChannelSpacing();
    return m_channelSpacing / hertzPerMegahertz * steps;
}

std::int32_t clsKeldoX::RomAdddrToStep(std::int32_t address)
{
    return toInt32((static_cast<double>(address) - presetMemory) / 2);
}

std::int32_t clsKeldoX::OneBasedIndexToRomAddr(std::int32_t index)
{
    return (std::clamp(index, 1, presetEntries) - 1) * 2 + presetMemory;
}
