// The settings file: whatever stands in it, every key reads as a text, a write is read back, and
// what the file held for others stays.
#include "Fuzz.h"

#include "platform/Application.h"
#include "platform/RunTimeError.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    const QString name = SettingsStore::location(applicationTitle());
    PROMISE(name.startsWith(home.path()));
    QDir().mkpath(QFileInfo(name).path());
    QFile file(name);
    PROMISE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size));
    file.close();

    const QString section = QStringLiteral("Settings");
    const QString before = SettingsStore::read(applicationTitle(), section, QStringLiteral("B"));
    try {
        SettingsStore::write(applicationTitle(), section, QStringLiteral("A"),
                             QStringLiteral("146.5"));
        PROMISE(SettingsStore::read(applicationTitle(), section, QStringLiteral("A")) ==
                QStringLiteral("146.5"));
        PROMISE(SettingsStore::read(applicationTitle(), section, QStringLiteral("B")) == before);
    } catch (const RunTimeError &error) {
        PROMISE(error.number() == 75);
    }
    return 0;
}
