// The settings store over QSettings.
#include "platform/SettingsStore.h"

#include "platform/RunTimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace {

#ifdef Q_OS_WIN
constexpr QSettings::Format storeFormat = QSettings::NativeFormat;
#else
constexpr QSettings::Format storeFormat = QSettings::IniFormat;

// QSettings would create the file readable by everybody, for as long as it takes to change that.
void makePrivateFile(const QString &name)
{
    const QString folder = QFileInfo(name).absolutePath();
    QDir().mkpath(folder);
    QFile file(name);
    // Also for a file that was there: saving keeps the access rights that it finds.
    if (file.exists() || file.open(QIODevice::WriteOnly))
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}
#endif

QString entry(const QString &section, const QString &key)
{
    return section + QLatin1Char('/') + key;
}

} // namespace

QString SettingsStore::location(const QString &application)
{
#ifdef Q_OS_WIN
    return QStringLiteral("HKEY_CURRENT_USER\\Software\\") + application;
#else
    Q_UNUSED(application)
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/keldo-x/settings.ini");
#endif
}

QString SettingsStore::read(const QString &application, const QString &section, const QString &key)
{
    const QSettings store(location(application), storeFormat);
    return store.value(entry(section, key)).toString();
}

void SettingsStore::write(const QString &application, const QString &section, const QString &key,
                          const QString &value)
{
    const QString name = location(application);
#ifndef Q_OS_WIN
    makePrivateFile(name);
#endif
    QSettings store(name, storeFormat);
    store.setValue(entry(section, key), value);
    store.sync();
    // A format error only says that the file held nonsense before.
    if (store.status() == QSettings::AccessError)
        throw RunTimeError(ErrorNumber::FileAccess,
                           QStringLiteral("The settings could not be saved in %1.").arg(name));
}
