// What the preset tests share: the settings as they are stored, and the colour of a button.
#pragma once

#include "MainBench.h"

#include "platform/Application.h"
#include "platform/SettingsStore.h"

inline QString stored(int index)
{
    return SettingsStore::read(QStringLiteral("KELDO-X Control Program"),
                               QStringLiteral("Settings"),
                               QStringLiteral("PresetFrequency %1").arg(index));
}

inline void store(int index, const QString &text)
{
    SettingsStore::write(applicationTitle(), QStringLiteral("Settings"),
                         QStringLiteral("PresetFrequency %1").arg(index), text);
}

inline bool isLightGreen(QPushButton &button)
{
    const QImage picture = button.grab().toImage();
    const QColor color = picture.pixelColor(picture.width() / 2, picture.height() / 5);
    return color.green() > color.red() + 40 && color.green() > color.blue() + 40;
}
