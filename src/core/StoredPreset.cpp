// Presets in the settings store.
#include "core/StoredPreset.h"

#include "core/TextNumbers.h"
#include "platform/Application.h"
#include "platform/SettingsStore.h"

static QString section()
{
    return QStringLiteral("Settings");
}

static QString keyOf(int index)
{
    return QStringLiteral("PresetFrequency") + numberToTextWithBlank(index);
}

double StoredPreset::read(int index)
{
    const QString stored = SettingsStore::read(applicationTitle(), section(), keyOf(index));
    return isNumeric(stored) ? numericValue(stored) : 0;
}

void StoredPreset::write(int index, double megahertz)
{
    SettingsStore::write(applicationTitle(), section(), keyOf(index),
                         numberToTextWithBlank(megahertz));
}
