// Properties by their names, their values as text, and the range that a unit tunes in.
#include "ctl/Property.h"

#include "core/TextNumbers.h"
#include "ctl/Failure.h"

const Property *propertyNamed(const QString &name)
{
    for (const Property &property : properties())
        if (name == QLatin1String(property.name))
            return &property;
    return nullptr;
}

QJsonValue exact(double value)
{
    return leadingNumber(numberToText(value));
}

QString textOf(const Property &property, const QJsonValue &value)
{
    const QString unit = property.unit[0] == '\0'
                             ? QString()
                             : QLatin1Char(' ') + QString::fromLatin1(property.unit);
    if (value.isBool())
        return QString::fromLatin1(value.toBool() ? property.trueWord : property.falseWord);
    if (value.isDouble())
        return numberToText(value.toDouble()) + unit;
    if (value.isArray())
        return QStringLiteral("%1 to %2")
                   .arg(numberToText(value[0].toDouble()), numberToText(value[1].toDouble())) +
               unit;
    return value.toString();
}

bool knowsRange(clsKeldoX &unit)
{
    unit.findStartFreq();
    return unit.knownMaxStep() > 0 && unit.StepsToMHz(1) > 0 && unit.isKnown();
}

static Failure outOfRange(clsKeldoX &unit)
{
    return {Exit::Refused,
            QStringLiteral("Cannot set the device to a frequency outside its range "
                           "(%1 to %2 MHz).")
                .arg(numberToText(unit.frequencyOf(0)), numberToText(unit.StopFreq()))};
}

std::optional<std::int32_t> stepOf(clsKeldoX &unit, double megahertz)
{
    if (!knowsRange(unit))
        return std::nullopt;
    const auto steps = unit.stepsOf(megahertz);
    return steps ? std::optional(toInt32(*steps)) : std::nullopt;
}

void tune(clsKeldoX &unit, double megahertz)
{
    if (!knowsRange(unit))
        return; // the reply that was missed is told of
    if (!unit.stepsOf(megahertz))
        throw outOfRange(unit);
    unit.setCurrentFreq(megahertz);
}
