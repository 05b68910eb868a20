// What a unit can be asked and told, by the words of the field: one table for reading, setting and
// printing.
#pragma once

#include "device/clsKeldoX.h"

#include <QJsonValue>
#include <QList>
#include <QString>

#include <optional>

struct Property
{
    const char *name;
    const char *unit = ""; // of its number
    // Undefined after a reply that was missing or bad.
    QJsonValue (*read)(clsKeldoX &unit);
    // Whether this unit has it; null: every unit. Asks the unit.
    bool (*isOffered)(clsKeldoX &unit) = nullptr;
    // The value that a text means; undefined for none. Null for what can only be read.
    QJsonValue (*parse)(const QString &text) = nullptr;
    // Fails before anything is sent for a value that the unit's wing would not send.
    void (*write)(clsKeldoX &unit, const QJsonValue &value) = nullptr;
    // What is read back confirms what was set; null: the two are equal.
    bool (*confirms)(clsKeldoX &unit, const QJsonValue &asked, const QJsonValue &has) = nullptr;
    // While the AGC is on it is the unit's own affair: not read unless asked for by name.
    bool isSetByAGC = false;
    const char *values = ""; // that may be set, for messages
    const char *trueWord = "on";
    const char *falseWord = "off";
};

const QList<Property> &properties();
// Null for a name that is none.
const Property *propertyNamed(const QString &name);

// "146.5 MHz", "on".
QString textOf(const Property &property, const QJsonValue &value);
// Numbers without the noise of their last digits: 0.3, not 0.30000000000000004.
QJsonValue exact(double value);

// Start, spacing and maximum step are known, asked for where they were not.
bool knowsRange(clsKeldoX &unit);
// MHz; the unit tunes to the nearest step. Fails for a frequency outside the unit's range.
void tune(clsKeldoX &unit, double megahertz);
// The step that the unit tunes to; nothing outside its range, or where the range is not known.
std::optional<std::int32_t> stepOf(clsKeldoX &unit, double megahertz);
