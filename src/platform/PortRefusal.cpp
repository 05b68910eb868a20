// The causes of a refused port.
#include "platform/PortRefusal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>

#ifndef Q_OS_WIN
#include <csignal>

#include <cerrno>
#endif

namespace {

#ifndef Q_OS_WIN

RunTimeError denied(const QString &device)
{
    const QFileInfo file(device);
    const bool groupMay = file.permission(QFile::ReadGroup | QFile::WriteGroup);
    return RunTimeError(ErrorNumber::DeviceNotOpen,
                        noAccessText(device, file.owner(), groupMay ? file.group() : QString()));
}

bool isRunning(qint64 process)
{
    return process > 0 && (kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM);
}

RunTimeError inUse(const QString &device, const QString &program, qint64 process)
{
    return RunTimeError(
        ErrorNumber::PortAlreadyOpen,
        QStringLiteral("%1 is in use by %2 (process %3). Close that program, then try again.")
            .arg(device, program.isEmpty() ? QStringLiteral("another program") : program)
            .arg(process));
}

// Not every program writes a lock file. The system tells who has a file open, of one's own programs
// at least; 0 when it does not.
qint64 processThatHolds(const QString &device)
{
    const QString wanted = QFileInfo(device).canonicalFilePath();
    for (const QString &process : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        const qint64 number = process.toLongLong();
        if (number <= 0 || number == QCoreApplication::applicationPid())
            continue;
        const QDir files(QStringLiteral("/proc/%1/fd").arg(number));
        for (const QString &file : files.entryList(QDir::AllEntries | QDir::System))
            if (QFile::symLinkTarget(files.filePath(file)) == wanted)
                return number;
    }
    return 0;
}

QString nameOfProcess(qint64 process)
{
    QFile name(QStringLiteral("/proc/%1/comm").arg(process));
    return name.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(name.readAll()).trimmed()
                                          : QString();
}

// Busy, or locked: by a program that runs, or by the file that one has left behind.
RunTimeError held(const QString &device)
{
    const QString file = lockFileOf(device);
    const QFileInfo lock(file);
    qint64 process = 0;
    QString host;
    QString program;
    if (file.isEmpty() || !lock.exists() ||
        !QLockFile(file).getLockInfo(&process, &host, &program)) {
        if (const qint64 holder = processThatHolds(device); holder > 0)
            return inUse(device, nameOfProcess(holder), holder);
        return RunTimeError(ErrorNumber::PortAlreadyOpen,
                            QStringLiteral("%1 is in use by another program. Close that program, "
                                           "then try again.")
                                .arg(device));
    }
    if (process == QCoreApplication::applicationPid())
        return RunTimeError(ErrorNumber::PortAlreadyOpen,
                            QStringLiteral("%1 is open in this program already.").arg(device));
    if (isRunning(process))
        return inUse(device, program, process);
    return RunTimeError(
        ErrorNumber::DeviceNotOpen,
        QStringLiteral(
            "%1 is locked by the file %2, which a program of %3 has left behind and "
            "which cannot be removed from here. Ask %3 or the administrator to remove it "
            "(sudo rm %2), then try again.")
            .arg(device, file,
                 lock.owner().isEmpty() ? QStringLiteral("another user") : lock.owner()));
}

RunTimeError notPermitted(const QString &device, const QString & /*systemText*/)
{
    // One error of Qt stands for three causes: busy, locked, and no access right.
    const QFileInfo file(device);
    return file.isReadable() && file.isWritable() ? held(device) : denied(device);
}

#else

RunTimeError notPermitted(const QString &device, const QString &systemText)
{
    return RunTimeError(ErrorNumber::PortAlreadyOpen,
                        QStringLiteral("%1 is in use by another program. Close that program, then "
                                       "try again. (%2)")
                            .arg(device, systemText));
}

#endif

} // namespace

QString noAccessText(const QString &device, const QString &owner, const QString &group)
{
    const QString text = QStringLiteral("No permission to open %1.").arg(device);
    if (!group.isEmpty() && group != QLatin1String("root"))
        return text + QStringLiteral(" Add your user to the group \"%1\" (sudo usermod -aG %1 "
                                     "$USER), then log out and in again.")
                          .arg(group);
    return text + QStringLiteral(" It belongs to %1; ask the administrator of this computer for a "
                                 "rule that lets you use serial ports.")
                      .arg(owner.isEmpty() ? QStringLiteral("somebody else") : owner);
}

QString lockFileOf([[maybe_unused]] const QString &device)
{
#ifdef Q_OS_WIN
    return {};
#else
    // The folders that serial ports are locked in, in the order in which they are tried.
    for (const char *name : {"/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp",
                             "/tmp", "/var/tmp", "/var/lock/lockdev", "/run/lock"}) {
        const QFileInfo folder(QString::fromLatin1(name));
        if (!folder.isDir() || !folder.isReadable() || !folder.isWritable())
            continue;
        QString port = device;
        if (port.startsWith(QLatin1String("/dev/")))
            port.remove(0, 5);
        return folder.filePath() + QStringLiteral("/LCK..") +
               port.replace(QLatin1Char('/'), QLatin1Char('_'));
    }
    return {};
#endif
}

RunTimeError portRefusal(const QString &device, QSerialPort::SerialPortError error,
                         const QString &systemText)
{
    switch (error) {
    case QSerialPort::DeviceNotFoundError:
        return RunTimeError(
            ErrorNumber::InvalidPortNumber,
            QStringLiteral("%1 is not there. Check that it is plugged in.").arg(device));
    case QSerialPort::PermissionError:
        return notPermitted(device, systemText);
    case QSerialPort::UnsupportedOperationError:
        return RunTimeError(ErrorNumber::CommStateNotSet, systemText);
    default:
        return RunTimeError(ErrorNumber::DeviceNotOpen, systemText);
    }
}
