// keldo-x-ctl: the units from a shell, without windows and without a display.
#include "core/Message.h"
#include "ctl/Commands.h"
#include "ctl/Print.h"
#include "platform/Application.h"
#include "platform/EndRequests.h"
#include "platform/EventQueue.h"
#include "platform/ServedPorts.h"

#include <QCoreApplication>
#include <QHash>

#include <cstdio>

#ifndef KELDOX_FOLLOW
Exit Commands::follow(const Request & /*request*/)
{
    throw Failure(
        Exit::WrongUse,
        QStringLiteral("This keldo-x-ctl was built without the network: it cannot follow"));
}
#endif

static Exit run(const QStringList &arguments)
{
    using Command = Exit (*)(const Request &);
    static const QHash<QString, Command> commands{
        {QStringLiteral("ports"), Commands::ports},   {QStringLiteral("search"), Commands::search},
        {QStringLiteral("get"), Commands::get},       {QStringLiteral("set"), Commands::set},
        {QStringLiteral("watch"), Commands::watch},   {QStringLiteral("raw"), Commands::raw},
        {QStringLiteral("preset"), Commands::preset}, {QStringLiteral("follow"), Commands::follow}};
    const Request request = requestOf(arguments);
    if (request.command.isEmpty()) {
        std::fputs(qPrintable(request.text), stdout);
        return Exit::Done;
    }
    // From here on, for before it nothing is open, and a read from a terminal would not end.
    const EndRequests endRequests;
    QObject::connect(&endRequests, &EndRequests::Requested, QCoreApplication::instance(),
                     [] { EventQueue::endProgram(); });
    ServedPorts simulated;
    if (request.simulator)
        if (const QString failure =
                simulated.add(QStringLiteral("keldo-x-sim"), QStringLiteral("simulated line"));
            !failure.isEmpty())
            throw Failure(Exit::NoPort, failure);
    return commands.value(request.command)(request);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(applicationTitle());
    QCoreApplication::setApplicationVersion(applicationVersion());
    try {
        return static_cast<int>(run(QCoreApplication::arguments().mid(1)));
    } catch (const Failure &failure) {
        Print::message(failure.text());
        return static_cast<int>(failure.code());
    }
}
