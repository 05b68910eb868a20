// The command line over Qt's parser.
#include "app/StartOptions.h"

#include "app/AppState.h"
#include "app/Handlers.h"
#include "app/modSearchPorts.h"
#include "core/ResumeNext.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

#include <QCommandLineParser>
#include <QRegularExpression>
#include <QTimer>

namespace {

const char usage[] =
    "Usage: keldo-x [--search | --connect COM[:ADDRESS]] [--simulator]\n"
    "Control program for Keldo-X tunable filters and addressable Tovin-R units.\n"
    "\n"
    "  --search                  search all ports for units, connect the first one\n"
    "  --connect COM[:ADDRESS]   connect the unit on this port: COM5, or COM5:3 for the unit with\n"
    "                            address 3 (1 to 8) on a shared line\n"
    "  --simulator               offer simulated units, for trying without hardware, on free COM\n"
    "                            numbers from 3 up; keldo-x-sim serves them\n"
    "  -h, --help                show this text\n"
    "  -v, --version             show the version\n";

StartOptions print(const QString &text, int exitCode)
{
    StartOptions options;
    options.action = StartOptions::Action::Print;
    options.text = text;
    options.exitCode = exitCode;
    return options;
}

StartOptions wrongUse(const QString &what)
{
    return print(QStringLiteral("keldo-x: %1 (see keldo-x --help)\n").arg(what), 2);
}

// "COM5", "5", "COM5:3".
StartOptions connectTo(const QString &place)
{
    static const QRegularExpression pattern(QStringLiteral(R"(^(?:COM)?(\d{1,3})(?::(\d{1,2}))?$)"),
                                            QRegularExpression::CaseInsensitiveOption);
    const auto match = pattern.match(place);
    StartOptions options;
    options.action = StartOptions::Action::Connect;
    options.port = match.captured(1).toShort();
    options.address = match.captured(2).toShort();
    const bool hasAddress = match.capturedLength(2) > 0;
    if (!match.hasMatch() || options.port < 1 || options.port > PortDirectory::lastNumber ||
        (hasAddress && (options.address < 1 || options.address > PortSearch::lastAddress)))
        return wrongUse(
            QStringLiteral("\"%1\" is no port: COM1 to COM255, and :1 to :8 for an address")
                .arg(place));
    return options;
}

void run(const StartOptions &options)
{
    const auto polling = [](auto step) {
        return [step] {
            if (const auto window = app().mainWindow; window && !EventQueue::ending())
                step(*window);
        };
    };
    whileGuarded([&] {
        resumeNext(
            "StartOptions.run", polling([](MainWindowView &window) { window.stopPolling(); }),
            [&] {
                if (options.action == StartOptions::Action::Search)
                    SearchPorts(1);
                else
                    SearchOneAddress(options.port, options.address);
            },
            polling([](MainWindowView &window) { window.restartPollingIfChecked(); }));
    });
}

} // namespace

StartOptions startOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption search(QStringLiteral("search"));
    const QCommandLineOption connect(QStringLiteral("connect"), {}, QStringLiteral("place"));
    const QCommandLineOption simulator(QStringLiteral("simulator"));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    parser.addOptions({search, connect, simulator, help, version});
    // The parser takes the first word for the program's name.
    if (!parser.parse(QStringList{QStringLiteral("keldo-x")} + arguments))
        return wrongUse(parser.errorText());
    if (parser.isSet(help))
        return print(QString::fromLatin1(usage), 0);
    if (parser.isSet(version))
        return print(QStringLiteral("keldo-x %1\n").arg(applicationVersion()), 0);
    if (!parser.positionalArguments().isEmpty())
        return wrongUse(
            QStringLiteral("unexpected \"%1\"").arg(parser.positionalArguments().first()));
    if (parser.isSet(search) && parser.isSet(connect))
        return wrongUse(QStringLiteral("--search and --connect exclude each other"));
    StartOptions options;
    if (parser.isSet(connect))
        options = connectTo(parser.value(connect));
    else if (parser.isSet(search))
        options.action = StartOptions::Action::Search;
    options.simulator = parser.isSet(simulator);
    return options;
}

void runWhenReady(const StartOptions &options)
{
    if (options.action != StartOptions::Action::Search &&
        options.action != StartOptions::Action::Connect)
        return;
    // The first time that the guard comes up the windows are there.
    auto *ready = new QObject(&app().guard());
    const auto begin = [ready, options] {
        delete ready;
        run(options);
    };
    const auto soon = [ready, begin] { QTimer::singleShot(0, ready, begin); };
    if (app().guard().isUp()) {
        soon();
        return;
    }
    QObject::connect(
        &app().guard(), &EventGuard::changed, ready,
        [soon](bool up) {
            if (up)
                soon();
        },
        Qt::SingleShotConnection);
}
