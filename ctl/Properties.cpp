// The table of properties.
#include "ctl/Property.h"

#include "core/TextNumbers.h"
#include "ctl/Failure.h"
#include "device/Firmware.h"

#include <QJsonArray>

#include <array>
#include <cmath>
#include <limits>

namespace {

const QJsonValue bad = QJsonValue::Undefined;

// The last reply was judged good, and the value with it.
QJsonValue ifGood(clsKeldoX &unit, const QJsonValue &value)
{
    return unit.lastStatus() == clsKeldoX::Good && unit.PortIsOpen() ? value : bad;
}

QJsonValue ifPositive(double value)
{
    return value > 0 ? exact(value) : bad;
}

QJsonValue ifText(const QString &text)
{
    return text.isEmpty() || ReplyText::isErrorWord(text) ? bad : QJsonValue(text);
}

QJsonValue readFrequency(clsKeldoX &unit)
{
    if (!knowsRange(unit))
        return bad;
    const std::int32_t step = unit.CurrentStep();
    return ifGood(unit, exact(unit.frequencyOf(step)));
}

QJsonValue readLock(clsKeldoX &unit)
{
    const bool locked = unit.Locked();
    const bool told = locked || unit.lastStatus() == clsKeldoX::Unlocked;
    return told ? QJsonValue(locked) : bad;
}

QJsonValue readBandwidth(clsKeldoX &unit)
{
    const double bandwidth = unit.ChanBW();
    return isNumeric(unit.lastReply()) ? exact(bandwidth) : bad;
}

QJsonValue readRange(clsKeldoX &unit)
{
    if (!knowsRange(unit))
        return bad;
    return QJsonArray{exact(unit.frequencyOf(0)), exact(unit.StopFreq())};
}

// The program's own names of the modes that it offers.
constexpr std::array limitingNames{"nominal", "-1", "-2"};

QJsonValue readLimiting(clsKeldoX &unit)
{
    const int mode = unit.InputLimitingMode();
    const bool isNamed = mode >= 1 && mode <= static_cast<int>(limitingNames.size());
    return ifGood(
        unit, isNamed ? QString::fromLatin1(limitingNames.at(static_cast<std::size_t>(mode - 1)))
                      : QStringLiteral("mode %1").arg(mode));
}

QJsonValue parseLimiting(const QString &text)
{
    for (const char *name : limitingNames)
        if (text.compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
            return QString::fromLatin1(name);
    return bad;
}

void writeLimiting(clsKeldoX &unit, const QJsonValue &value)
{
    for (std::size_t i = 0; i < limitingNames.size(); ++i)
        if (value.toString() == QLatin1String(limitingNames.at(i)))
            unit.setInputLimitingMode(static_cast<std::int16_t>(i + 1));
}

QJsonValue parseSwitch(const QString &text)
{
    if (text.compare(QLatin1String("on"), Qt::CaseInsensitive) == 0)
        return true;
    return text.compare(QLatin1String("off"), Qt::CaseInsensitive) == 0 ? QJsonValue(false) : bad;
}

QJsonValue parseFrequency(const QString &text)
{
    const auto megahertz = frequencyInMHz(text);
    return megahertz ? exact(*megahertz) : bad;
}

// A number with or without its unit word.
QJsonValue parseNumber(QString text, QLatin1String unit)
{
    text = text.trimmed();
    if (text.endsWith(unit, Qt::CaseInsensitive))
        text.chop(unit.size());
    return isNumeric(text) ? exact(numericValue(text)) : bad;
}

QJsonValue parseDecibels(const QString &text)
{
    return parseNumber(text, QLatin1String("dB"));
}

template <class Integer> QJsonValue parseWhole(const QString &text)
{
    const QJsonValue value = parseNumber(text, QLatin1String("clicks"));
    const double number = value.toDouble(0.5);
    const bool fits = number == std::floor(number) &&
                      number >= std::numeric_limits<Integer>::min() &&
                      number <= std::numeric_limits<Integer>::max();
    return fits ? value : bad;
}

void writeStep(clsKeldoX &unit, const QJsonValue &value)
{
    const std::int32_t step = value.toInt();
    const std::int32_t last = unit.knownMaxStep();
    if (last > 0 && (step < 0 || step > last))
        throw Failure(Exit::Refused,
                      QStringLiteral("Cannot set the device to a step outside its range (0 to %1).")
                          .arg(last));
    unit.setCurrentStep(step);
}

// The unit is at the step nearest to what was asked for.
bool isNearest(clsKeldoX &unit, const QJsonValue &asked, const QJsonValue &has)
{
    const auto step = stepOf(unit, asked.toDouble());
    return step && exact(unit.frequencyOf(*step)) == has;
}

bool hasAtten(clsKeldoX &unit)
{
    return unit.HasAtten();
}

bool hasPelltrim(clsKeldoX &unit)
{
    return unit.HasPelltrim();
}

const QList<Property> table{
    {.name = "frequency",
     .unit = "MHz",
     .read = readFrequency,
     .parse = parseFrequency,
     .write = [](clsKeldoX &unit, const QJsonValue &value) { tune(unit, value.toDouble()); },
     .confirms = isNearest,
     .values = "a frequency, as 146.5MHz, or \"step\" and a number"},
    {.name = "step",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.CurrentStep()); },
     .parse = parseWhole<std::int32_t>,
     .write = writeStep,
     .values = "a whole number"},
    {.name = "lock", .read = readLock, .trueWord = "locked", .falseWord = "unlocked"},
    {.name = "agc",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.AGC()); },
     .isOffered =
         [](clsKeldoX &unit) {
             return unit.HasAGC() && unit.firmwareNumber() > Firmware::lastWithoutAGC;
         },
     .parse = parseSwitch,
     .write = [](clsKeldoX &unit, const QJsonValue &value) { unit.setAGC(value.toBool()); },
     .values = "on or off"},
    {.name = "attenuation",
     .unit = "dB",
     .read = [](clsKeldoX &unit) { return ifGood(unit, exact(unit.atten())); },
     .isOffered = hasAtten,
     .parse = parseDecibels,
     .write = [](clsKeldoX &unit, const QJsonValue &value) { unit.setAtten(value.toDouble()); },
     .isSetByAGC = true,
     .values = "a number of dB"},
    {.name = "agc-offset",
     .unit = "dB",
     .read = [](clsKeldoX &unit) { return ifGood(unit, exact(unit.attenOffset())); },
     .isOffered = [](clsKeldoX &unit) { return unit.HasAGCOffset(); },
     .parse = parseDecibels,
     .write = [](clsKeldoX &unit,
                 const QJsonValue &value) { unit.setAttenOffset(value.toDouble()); },
     .values = "a number of dB"},
    {.name = "input-attenuation",
     .unit = "dB",
     .read = [](clsKeldoX &unit) { return ifGood(unit, exact(unit.InputAtten())); },
     .isOffered = [](clsKeldoX &unit) { return unit.HasInputAtten(); },
     .parse = parseDecibels,
     .write = [](clsKeldoX &unit,
                 const QJsonValue &value) { unit.setInputAtten(value.toDouble()); },
     .values = "a number of dB"},
    {.name = "bypass",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.Bypass()); },
     .isOffered = [](clsKeldoX &unit) { return unit.HasBypass(); },
     .parse = parseSwitch,
     .write = [](clsKeldoX &unit, const QJsonValue &value) { unit.setBypass(value.toBool()); },
     .values = "on or off"},
    {.name = "limiting",
     .read = readLimiting,
     .isOffered = [](clsKeldoX &unit) { return unit.HasAdjustableInputLimiting(); },
     .parse = parseLimiting,
     .write = writeLimiting,
     .values = "nominal, -1 or -2"},
    {.name = "pelltrim",
     .unit = "clicks",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.Pelltrim()); },
     .isOffered = hasPelltrim,
     .parse = parseWhole<std::int16_t>,
     .write =
         [](clsKeldoX &unit, const QJsonValue &value) {
             unit.setPelltrim(static_cast<std::int16_t>(value.toInt()));
         },
     .values = "a whole number of clicks"},
    // Below that firmware the mode is the program's own memory, which does not outlive it.
    {.name = "calibrated",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.ZN_calMode()); },
     .isOffered =
         [](clsKeldoX &unit) {
             return unit.HasPelltrim() && unit.firmwareNumber() > Firmware::lastWithEmulatedCalMode;
         },
     .parse = parseSwitch,
     .write = [](clsKeldoX &unit, const QJsonValue &value) { unit.setZN_calMode(value.toBool()); },
     .values = "on or off"},
    {.name = "pelltrim-calibration",
     .unit = "clicks",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.PelltrimCal()); },
     .isOffered = hasPelltrim},
    {.name = "identity", .read = [](clsKeldoX &unit) { return ifText(unit.ID()); }},
    {.name = "revision", .read = [](clsKeldoX &unit) { return ifText(unit.FirmwareRevision()); }},
    {.name = "range", .unit = "MHz", .read = readRange},
    {.name = "start",
     .unit = "MHz",
     .read = [](clsKeldoX &unit) { return ifGood(unit, exact(unit.StartFreq())); }},
    {.name = "center",
     .unit = "MHz",
     .read = [](clsKeldoX &unit) { return knowsRange(unit) ? exact(unit.CenterFreq()) : bad; }},
    {.name = "stop",
     .unit = "MHz",
     .read = [](clsKeldoX &unit) { return knowsRange(unit) ? exact(unit.StopFreq()) : bad; }},
    {.name = "spacing",
     .unit = "Hz",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.ChannelSpacing()); }},
    {.name = "max-step", .read = [](clsKeldoX &unit) { return ifPositive(unit.knownMaxStep()); }},
    {.name = "bandwidth",
     .unit = "Hz",
     .read = readBandwidth,
     .isOffered =
         [](clsKeldoX &unit) { return unit.firmwareNumber() > Firmware::lastWithoutBandwidth; }},
    {.name = "if",
     .unit = "MHz",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.IFfreq()); }},
    {.name = "max-attenuation",
     .unit = "dB",
     .read = [](clsKeldoX &unit) { return ifGood(unit, unit.MaxAtten()); },
     .isOffered = hasAtten},
    {.name = "attenuation-step",
     .unit = "dB",
     .read = [](clsKeldoX &unit) { return ifPositive(unit.attenStep()); },
     .isOffered = hasAtten},
};

} // namespace

const QList<Property> &properties()
{
    return table;
}
