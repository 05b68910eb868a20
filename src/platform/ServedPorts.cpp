// Asking a program for its lines.
#include "platform/ServedPorts.h"

#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"
#include "platform/PortProcess.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

namespace {

// The first start after a computer was switched on, from a slow disk, with a virus scanner.
constexpr int answerWithinMs = 20000;

QString pathOf(const QString &program)
{
    const QString beside =
        QStandardPaths::findExecutable(program, {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable(program) : beside;
}

// What the program prints; nothing when it does not end well, and in time.
QString listingOf(const QString &path)
{
    QProcess process;
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(&process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
    QTimer::singleShot(answerWithinMs, &loop, &QEventLoop::quit);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(path, {QStringLiteral("--list")}, QIODevice::ReadOnly);
    if (process.state() != QProcess::NotRunning && !EventQueue::ending())
        loop.exec();
    const bool endedWell = process.state() == QProcess::NotRunning &&
                           process.error() == QProcess::UnknownError && process.exitCode() == 0;
    process.disconnect(&loop);
    return endedWell ? QString::fromUtf8(process.readAll()) : QString();
}

QList<PortDirectory::Device> devicesIn(const QString &listing, const QString &path,
                                       const QString &name)
{
    static const QRegularExpression line(QStringLiteral(R"(^(\d+) +(\S.*?)\r?$)"),
                                         QRegularExpression::MultilineOption);
    QList<PortDirectory::Device> devices;
    for (auto match = line.globalMatch(listing); match.hasNext();) {
        const auto words = match.next();
        const QString device = name + QLatin1Char(' ') + words.captured(1);
        devices.append({device,
                        device,
                        words.captured(2),
                        {},
                        std::make_shared<PortProcess>(
                            path, QStringList{QStringLiteral("--stdio"), words.captured(1)})});
    }
    return devices;
}

} // namespace

ServedPorts::~ServedPorts()
{
    PortDirectory::instance().serve({});
}

QString ServedPorts::add(const QString &program, const QString &name)
{
    const QString path = pathOf(program);
    if (path.isEmpty())
        return QStringLiteral("The program %1 is neither beside this one nor in the PATH. It comes "
                              "with this program: install it, or start without %2s.")
            .arg(program, name);
    const auto devices = devicesIn(listingOf(path), path, name);
    if (EventQueue::ending())
        return {};
    if (devices.isEmpty())
        return QStringLiteral("The program %1 does not tell its %2s.").arg(path, name);
    PortDirectory::instance().serve(devices);
    return {};
}
