// Starting the tool and reading its lines.
#include "FollowBench.h"

#include <QRegularExpression>

#include <csignal>

void FollowBench::follow(const char *options)
{
    const QStringList arguments{QStringLiteral("follow"),
                                QStringLiteral("127.0.0.1:%1").arg(receiver.port())};
    tool = CtlBench::start(arguments + CtlBench::words("--port COM7 --interval 0.05 --timeout 1") +
                           CtlBench::words(options));
}

QString FollowBench::nextLine(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (!tool->canReadLine() && clock.elapsed() < milliseconds &&
           (tool->state() != QProcess::NotRunning || tool->bytesAvailable() > 0))
        tool->waitForReadyRead(20);
    return QString::fromUtf8(tool->readLine()).trimmed();
}

QString FollowBench::nextText(int milliseconds)
{
    static const QRegularExpression stamp(QStringLiteral(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  )"));
    QString line = nextLine(milliseconds);
    return stamp.match(line).hasMatch() ? line.remove(stamp) : QStringLiteral("?") + line;
}

bool FollowBench::isQuiet(int milliseconds)
{
    return nextLine(milliseconds).isEmpty();
}

Outcome FollowBench::end()
{
    if (tool->state() != QProcess::NotRunning)
        ::kill(static_cast<pid_t>(tool->processId()), SIGTERM);
    return CtlBench::outcomeOf(*tool);
}
