// The per-user settings store: application name, section, key. The registry's per-user area on
// Windows; elsewhere an INI file in the user's configuration folder, readable by the user alone.
#pragma once

#include <QString>

namespace SettingsStore {

// A missing or unreadable key reads as empty.
QString read(const QString &application, const QString &section, const QString &key);

// Raises error 75 when the store cannot be written.
void write(const QString &application, const QString &section, const QString &key,
           const QString &value);

// Where the settings live, for people: a file name, or a registry path.
QString location(const QString &application);

} // namespace SettingsStore
