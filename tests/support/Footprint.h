// What the process holds of the computer: where it must stay flat, it is read before and after.
#pragma once

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QWidget>

// AddressSanitizer keeps what was freed for a while: the memory is its own then.
#ifdef __SANITIZE_ADDRESS__
constexpr bool memoryTells = false;
#else
constexpr bool memoryTells = true;
#endif

struct Footprint
{
    qint64 residentKiB = 0;
    qsizetype descriptors = 0;
    qsizetype objects = 0; // of the windows and the application, with all that they own

    static Footprint now()
    {
        Footprint print;
        QFile status(QStringLiteral("/proc/self/status"));
        if (status.open(QIODevice::ReadOnly)) {
            const QByteArray text = status.readAll();
            const auto at = text.indexOf("VmRSS:");
            print.residentKiB = text.mid(at + 6).trimmed().split(' ').first().toLongLong();
        }
        print.descriptors =
            QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
        for (const QWidget *top : QApplication::topLevelWidgets())
            print.objects += 1 + top->findChildren<QObject *>().size();
        print.objects += qApp->findChildren<QObject *>().size();
        return print;
    }

    QString text() const
    {
        return QStringLiteral("%1 KiB, %2 descriptors, %3 objects")
            .arg(residentKiB)
            .arg(descriptors)
            .arg(objects);
    }
};
