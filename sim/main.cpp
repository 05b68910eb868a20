// keldo-x-sim: serves simulated units, under COM numbers until it is told to end or to the program
// that has started it.
#include "sim/CommandLine.h"
#include "sim/ExchangeLog.h"
#include "sim/StandardStreams.h"
#ifndef _WIN32
#include "sim/PortServer.h"
#endif

#include <QCoreApplication>

#include <csignal>
#include <iostream>
#include <stdexcept>

namespace {

constexpr int badOptions = 2;
// Lower numbers are left to the computer's own serial ports.
[[maybe_unused]] constexpr int firstNumber = 3;

bool isSet(const QCommandLineParser &parser, const char *option)
{
    return parser.isSet(QString::fromLatin1(option));
}

[[noreturn]] void serveStandardStreams(const QCommandLineParser &parser,
                                       const std::vector<sim::LineSpec> &lines)
{
    const int number = sim::numberOption(parser, "stdio", 1, static_cast<int>(lines.size()));
#ifndef _WIN32
    // A terminal sends these to all programs that were started together; the one on the other side
    // may still have something to say to its unit.
    for (const int signal : {SIGINT, SIGHUP})
        std::signal(signal, SIG_IGN);
#endif
    const auto listener = isSet(parser, "log") ? sim::exchangeLog(std::cerr, {}) : nullptr;
    sim::serveStandardStreams(lines.at(static_cast<std::size_t>(number) - 1), listener);
}

int servePorts([[maybe_unused]] const QCommandLineParser &parser,
               [[maybe_unused]] const std::vector<sim::LineSpec> &lines)
{
#ifdef _WIN32
    throw std::runtime_error("this system has no pseudo-terminals: start \"keldo-x --simulator\", "
                             "or see --stdio");
#else
    sim::PortServer server;
    server.first = sim::numberOption(parser, "first", firstNumber, 255);
    server.logs = isSet(parser, "log");
    server.lists = !isSet(parser, "quiet");
    server.run(lines);
    return 0;
#endif
}

int run(const QCommandLineParser &parser)
{
    const auto lines = sim::linesFrom(parser);
    if (isSet(parser, "list")) {
        for (std::size_t i = 0; i < lines.size(); ++i)
            std::cout << i + 1 << "  " << lines[i].describe() << '\n';
        return 0;
    }
    if (isSet(parser, "stdio"))
        serveStandardStreams(parser, lines);
    return servePorts(parser, lines);
}

int fail(const std::string &text, int code)
{
    std::cerr << "keldo-x-sim: " << text << '\n';
    return code;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("keldo-x-sim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELDOX_VERSION));
    QCommandLineParser parser;
    sim::addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(parser.errorText().toStdString(), badOptions);
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    try {
        return run(parser);
    } catch (const std::invalid_argument &error) {
        return fail(error.what(), badOptions);
    } catch (const std::exception &error) {
        return fail(error.what(), 1);
    }
}
