// Asking the unit for its frequency plan, and counting in its steps.
#include "device/FrequencyPlan.h"

#include "core/TextNumbers.h"
#include "device/Firmware.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double hertzPerMegahertz = 1000000.0;
constexpr std::int32_t presetMemory = 94208; // hexadecimal 17000
constexpr std::int32_t presetEntries = 500;

bool endsWithMHz(const QString &reply)
{
    return reply.endsWith(QLatin1String("MHz"));
}

bool endsWithHz(const QString &reply)
{
    return reply.endsWith(QLatin1String("Hz"));
}

bool isPositive(const QString &reply)
{
    return isNumeric(reply) && numericValue(reply) > 0;
}

} // namespace

double FrequencyPlan::StartFreq()
{
    return m_exchange.setup().initialized ? m_startFreq : askStartFreq();
}

double FrequencyPlan::askStartFreq()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get StartFreq",
         .command = "*START FREQ?",
         .isGood = endsWithMHz,
         .message = "The device did not respond correctly to a 'start frequency' query.",
         .unasked = Exchange::GivesSetUpValue},
        m_startFreq);
}

void FrequencyPlan::forgetPlan()
{
    m_startFreq = m_stopFreq = m_centerFreq = 0;
    m_ifFreq = m_channelSpacing = m_maxStep = m_channelBandwidth = 0;
}

void FrequencyPlan::findStartFreq()
{
    if (m_startFreq == 0)
        askStartFreq();
}

// Read in MHz but written in Hz: the factory command is older than the query.
void FrequencyPlan::setStartFreq(double megahertz)
{
    m_exchange.writeFactory("clsKeldoX.Let StartFreq", QStringLiteral("!SFRQ"),
                            megahertz * hertzPerMegahertz);
}

double FrequencyPlan::StopFreq()
{
    const auto unit = m_exchange.keepAlive();
    reportAndEnd("clsKeldoX.Get StopFreq", [this] {
        findStartFreq();
        const double stop = frequencyOf(knownMaxStep());
        m_stopFreq = isKnown() && m_maxStep > 0 ? stop : 0;
    });
    return m_stopFreq;
}

double FrequencyPlan::CenterFreq()
{
    const auto unit = m_exchange.keepAlive();
    reportAndEnd("clsKeldoX.Get CenterFreq", [this] {
        findStartFreq();
        if (m_stopFreq == 0)
            StopFreq();
        m_centerFreq = m_stopFreq == 0 ? 0 : (m_stopFreq + m_startFreq) / 2;
    });
    return m_centerFreq;
}

std::int32_t FrequencyPlan::IFfreq()
{
    if (m_exchange.setup().initialized)
        return m_ifFreq;
    return m_exchange.query(
        {.source = "clsKeldoX.Get IFfreq",
         .command = "*IFRQ?",
         .isGood = endsWithMHz,
         .message = "The device did not respond correctly to an 'IF frequency' query."},
        m_ifFreq);
}

// The command's value is computed in 32 bits, as the unit holds it: above 2147 MHz it overflows.
void FrequencyPlan::setIFfreq(std::int32_t megahertz)
{
    m_exchange.run("clsKeldoX.Let IFfreq", [&] {
        m_exchange.send(QStringLiteral("!IFRQ") +
                        numberToTextWithBlank(toInt32(megahertz * hertzPerMegahertz)));
    });
}

// A unit that cannot tell its bandwidth has bandwidth 0; that is never reported as an error.
std::int32_t FrequencyPlan::ChanBW()
{
    if (m_exchange.setup().initialized)
        return m_channelBandwidth;
    return m_exchange.reading("clsKeldoX.Get ChanBW", m_channelBandwidth, [this] {
        m_channelBandwidth = 0;
        if (m_options.firmwareNumber() <= Firmware::lastWithoutBandwidth)
            return;
        const QString reply = m_exchange.send(QStringLiteral("*BNDW?")).whole();
        if (reply.isEmpty())
            m_exchange.setup().miss();
        if (isNumeric(reply)) {
            const double number = ReplyText::numberIn(reply);
            if (std::abs(number) <= std::numeric_limits<std::int32_t>::max())
                m_channelBandwidth = toInt32(number);
        }
        m_exchange.finish(UnitEvents::Good);
    });
}

void FrequencyPlan::setChanBW(std::int32_t bandwidth)
{
    m_exchange.writeFactory("clsKeldoX.Let ChanBW", QStringLiteral("!BNDW"), bandwidth);
}

std::int32_t FrequencyPlan::ChannelSpacing()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get ChannelSpacing",
         .command = "*CHAN SPACE?",
         .isGood = endsWithHz,
         .message = "The device did not respond correctly to a 'channel spacing' query.",
         .unasked = Exchange::GivesSetUpValue},
        m_channelSpacing);
}

void FrequencyPlan::setChannelSpacing(std::int32_t hertz)
{
    m_exchange.writeFactory("clsKeldoX.Let ChannelSpacing", QStringLiteral("!CHSP"), hertz);
}

std::int32_t FrequencyPlan::MaxStep()
{
    return m_exchange.setup().initialized ? m_maxStep : askMaxStep();
}

std::int32_t FrequencyPlan::askMaxStep()
{
    return m_exchange.query(
        {.source = "clsKeldoX.Get MaxStep",
         .command = "*MAX STEP?",
         .isGood = isPositive,
         .message = "The device did not respond correctly to a 'max step' query.",
         .unasked = Exchange::GivesSetUpValue},
        m_maxStep);
}

std::int32_t FrequencyPlan::knownMaxStep()
{
    const auto unit = m_exchange.keepAlive();
    if (m_maxStep == 0)
        askMaxStep();
    return m_maxStep;
}

void FrequencyPlan::setMaxStep(std::int32_t steps)
{
    m_exchange.writeFactory("clsKeldoX.Let MaxStep", QStringLiteral("!MXST"), steps);
}

std::int16_t FrequencyPlan::preScaler()
{
    std::int16_t divisor = 0;
    return m_exchange.query(
        {.source = "clsKeldoX.Get preScaler",
         .command = "*PRSC?",
         .isGood = isNumeric,
         .message = "The device did not respond correctly to a 'prescaler' query."},
        divisor);
}

void FrequencyPlan::setPreScaler(std::int16_t divisor)
{
    if (divisor == 64 || divisor == 128)
        m_exchange.writeFactory("clsKeldoX.Let preScaler", QStringLiteral("!PRSC"), divisor);
}

double FrequencyPlan::MHzToSteps(double megahertz)
{
    const auto unit = m_exchange.keepAlive();
    if (m_channelSpacing < 1)
        ChannelSpacing();
    return m_channelSpacing < 1 ? 0 : megahertz * hertzPerMegahertz / m_channelSpacing;
}

double FrequencyPlan::StepsToMHz(std::int32_t steps)
{
    const auto unit = m_exchange.keepAlive();
    if (m_channelSpacing < 1)
        ChannelSpacing();
    return m_channelSpacing / hertzPerMegahertz * steps;
}

double FrequencyPlan::frequencyOf(std::int32_t step)
{
    const auto unit = m_exchange.keepAlive();
    const double offset = StepsToMHz(step);
    return m_startFreq + offset;
}

std::optional<double> FrequencyPlan::stepsOf(double megahertz)
{
    const auto unit = m_exchange.keepAlive();
    findStartFreq();
    if (m_stopFreq == 0)
        StopFreq();
    if (isKnown() && megahertz >= m_startFreq && megahertz <= m_stopFreq)
        return MHzToSteps(megahertz - m_startFreq);
    return std::nullopt;
}

std::int32_t FrequencyPlan::RomAdddrToStep(std::int32_t address)
{
    return toInt32((static_cast<double>(address) - presetMemory) / 2);
}

std::int32_t FrequencyPlan::OneBasedIndexToRomAddr(std::int32_t index)
{
    return (std::clamp(index, 1, presetEntries) - 1) * 2 + presetMemory;
}
