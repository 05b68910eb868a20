// The unit's Pelltrim fine offset in clicks, its calibration value and the calibrated mode.
#include "device/clsKeldoX.h"

#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

namespace {

constexpr double lastFirmwareWithoutCalMode = 2.2;
constexpr double lastFirmwareWithEmulatedCalMode = 2.27;

} // namespace

// Tests the word as it stands: a property of fine tuning never asks for the options itself.
bool clsKeldoX::canFineTune()
{
    return PortIsOpen() && knowsPelltrim();
}

std::int32_t clsKeldoX::judgeClicks(const QString &reply, const char *message, std::int16_t &member)
{
    if (reply.endsWith(QLatin1String("clicks"))) {
        try {
            member = toInt16(leadingNumber(ParseData(reply)));
            return keep(Good);
        } catch (const RunTimeError &) { // NOLINT(bugprone-empty-catch)
            // More clicks than fit is as bad as none.
        }
    }
    return judgeFailure(reply, message);
}

void clsKeldoX::finishClicks(std::int32_t status)
{
    finish(status);
    emit ZNChange(m_pelltrim);
}

void clsKeldoX::askClicks(const char *source, const char *command, const char *message,
                          std::int16_t &member)
{
    const auto unit = keepAlive();
    reportAndEnd(source, [&] {
        if (canFineTune())
            finishClicks(judgeClicks(deviceWrite(QString::fromLatin1(command)), message, member));
    });
}

std::int32_t clsKeldoX::writeClicks(const char *source, const char *command, std::int16_t clicks,
                                    const char *message, std::int16_t &member)
{
    const auto unit = keepAlive();
    std::int32_t status = lastStatus();
    reportAndEnd(source, [&] {
        if (!canFineTune())
            return;
        const QString line = QString::fromLatin1(command) + QLatin1Char(' ') + numberToText(clicks);
        status = judgeClicks(deviceWrite(line), message, member);
        // What leaving calibrated mode goes back to, on units that emulate it.
        if (status == Good && !m_calMode)
            m_rememberedPelltrim = m_pelltrim;
        finishClicks(status);
    });
    return status;
}

std::int16_t clsKeldoX::Pelltrim()
{
    const auto unit = keepAlive();
    askClicks("clsKeldoX.Get Pelltrim", "*ZNSE?",
              "The device did not respond correctly to an 'Pelltrim setting' query.", m_pelltrim);
    return m_pelltrim;
}

void clsKeldoX::setPelltrim(std::int16_t clicks)
{
    writePelltrim(clicks);
}

std::int32_t clsKeldoX::writePelltrim(std::int16_t clicks)
{
    return writeClicks("clsKeldoX.Let Pelltrim", "*ZNSE", clicks,
                       "The device did not respond correctly to an 'Pelltrim setting' command.",
                       m_pelltrim);
}

std::int16_t clsKeldoX::PelltrimCal()
{
    const auto unit = keepAlive();
    if (!setup().initialized)
        askCalibration();
    return m_pelltrimCal;
}

void clsKeldoX::askCalibration()
{
    askClicks("clsKeldoX.Get PelltrimCal", "*ZNCA?",
              "The device did not respond correctly to an 'Pelltrim calibration setting' query.",
              m_pelltrimCal);
}

void clsKeldoX::setPelltrimCal(std::int16_t clicks)
{
    writeClicks("clsKeldoX.Let PelltrimCal", "!ZNCA", clicks,
                "The device did not respond correctly to an 'Pelltrim cal' command.",
                m_pelltrimCal);
}

bool clsKeldoX::ZN_calMode()
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Get ZN_calMode", [this] {
        if (!canFineTune() || firmwareNumber() <= lastFirmwareWithEmulatedCalMode)
            return;
        const QString reply = deviceWrite(QStringLiteral("*ZNCM?"));
        std::int32_t status = Good;
        if (reply.startsWith(QLatin1Char('1')) || reply.startsWith(QLatin1Char('0')))
            m_calMode = reply.startsWith(QLatin1Char('1'));
        else
            status = BadReply;
        keep(status);
        if (status == BadReply)
            complain(nullptr);
        emit ZNcalModeChange(m_calMode);
        finish(status);
    });
    return m_calMode;
}

// Three generations of units: the oldest know no calibrated mode, the next have it emulated here
// with two settings, the rest do it themselves.
void clsKeldoX::setZN_calMode(bool on)
{
    const auto unit = keepAlive();
    reportAndEnd("clsKeldoX.Let ZN_calMode", [&] {
        if (!canFineTune())
            return;
        const double firmware = firmwareNumber();
        std::int32_t status = lastStatus();
        if (firmware > lastFirmwareWithEmulatedCalMode) {
            const QString reply =
                deviceWrite(QStringLiteral("*ZNCM ") + (on ? QLatin1Char('1') : QLatin1Char('0')));
            status = judgeSwitch(reply, on, nullptr, m_calMode);
        } else if (firmware > lastFirmwareWithoutCalMode) {
            m_calMode = on;
            status = writePelltrim(on ? PelltrimCal() : m_rememberedPelltrim);
        }
        emit ZNcalModeChange(m_calMode);
        finish(status);
    });
}
