// keldo-x-sim: serves simulated units under COM numbers until it is told to end.
#include "sim/ComPorts.h"
#include "sim/LineSpec.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <mutex>
#include <stdexcept>
#include <system_error>

namespace {

constexpr int badOptions = 2;
constexpr int mostLines = 64;
// Lower numbers are left to the computer's own serial ports.
constexpr int firstNumber = 3;

constexpr const char *description = R"(Simulated KELDO-X and TOVIN-R units on pseudo-terminals.

Each line gets a COM number: a link com<n> in the folder keldo-x/ports of the user's
data folder, where the control program finds it. The links go when this program ends
(Ctrl-C).

Without options there are three lines: two KELDO-X units and one line with two
TOVIN-R units at the addresses 2 and 5, all of them with every option.

The options for units hold for every line. --line describes one line, on top of them,
as name=value pairs joined by commas. The names are those of the options (kind,
addresses, firmware, without, aopt, copt, password, start, if, spacing, max-step,
bandwidth, max-atten, atten-step, paced, terminator, fault, late-by) and com; lists
inside a line are joined by "+".

Faults: silence, late-reply, split-reply, garbage, binary, endless, empty-reply,
wrong-unit-word, echo, unlocked, permission-denied, unplug.

Examples:
  keldo-x-sim
  keldo-x-sim --lines 3 --firmware 3.17 --password secret --paced
  keldo-x-sim --kind tovin-r --addresses 1,2,8 --com 7 --log
  keldo-x-sim --without agc,pelltrim --fault "silence:*STEP:2"
  keldo-x-sim --line com=4,firmware=2.25 --line "kind=tovin-r,addresses=2+5,fault=garbage")";

struct ValueOption
{
    const char *name;
    const char *help;
    const char *value;
};

// Options whose name and value describe a line.
constexpr std::array<ValueOption, 17> unitOptions{{
    {"kind", "Kind of unit: keldo-x (the default) or tovin-r.", "kind"},
    {"addresses", "Addresses on the line, 1 to 99, up to eight; a TOVIN-R has 1 by default.",
     "list"},
    {"firmware", "Firmware number, 3.38 by default, or the whole revision text.", "number"},
    {"without", "Options left out: agc, atten (and so agc), input-atten, bypass, pelltrim.",
     "list"},
    {"aopt", "Option word A as a number.", "word"},
    {"copt", "Option word C as a number.", "word"},
    {"password", "Password that the unit asks for before it accepts settings.", "text"},
    {"start", "Start frequency, 100 MHz by default.", "MHz"},
    {"if", "IF frequency, 21.4 MHz by default.", "MHz"},
    {"spacing", "Channel spacing, 25000 Hz by default.", "Hz"},
    {"max-step", "Highest step, 4000 by default.", "step"},
    {"bandwidth", "Channel bandwidth, 25000 Hz by default.", "Hz"},
    {"max-atten", "Maximum attenuation, 50 dB by default.", "dB"},
    {"atten-step", "Attenuation step, 0.5 dB by default; 0 = the unit cannot tell.", "dB"},
    {"terminator", "What ends a reply: cr (the default) or crlf.", "name"},
    {"fault", "Fault of the lines; only for commands that begin so, only so many times.",
     "name[:command[:times]]"},
    {"late-by", "How late the fault late-reply is, 300 ms by default.", "ms"},
}};

struct Served
{
    std::unique_ptr<sim::SimulatedLine> line;
    sim::ComPortLink link;
};

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QString::fromUtf8(description));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(
        {QStringLiteral("lines"), QStringLiteral("Number of lines."), QStringLiteral("count")});
    parser.addOption({QStringLiteral("line"), QStringLiteral("Adds one line; may be repeated."),
                      QStringLiteral("description")});
    for (const ValueOption &option : unitOptions)
        parser.addOption({QString::fromLatin1(option.name), QString::fromLatin1(option.help),
                          QString::fromLatin1(option.value)});
    parser.addOption({QStringLiteral("com"),
                      QStringLiteral("COM number of the next line; may be repeated."),
                      QStringLiteral("number")});
    parser.addOption({QStringLiteral("first"),
                      QStringLiteral("Lowest COM number for lines without one of their own, 3 by "
                                     "default: lower ones are left to real ports."),
                      QStringLiteral("number")});
    parser.addOption(
        {QStringLiteral("paced"), QStringLiteral("Keeps the pace of 19200 baud, 10 bits a byte.")});
    parser.addOption({QStringLiteral("log"), QStringLiteral("Prints commands and replies.")});
    parser.addOption({{QStringLiteral("q"), QStringLiteral("quiet")},
                      QStringLiteral("Does not list the lines.")});
}

int numberOption(const QCommandLineParser &parser, const char *name, int otherwise, int highest)
{
    const QString text = parser.value(QString::fromLatin1(name));
    if (!parser.isSet(QString::fromLatin1(name)))
        return otherwise;
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < 1 || number > highest)
        throw std::invalid_argument(std::string(name) + " must be a number from 1 to " +
                                    std::to_string(highest) + ", not \"" + text.toStdString() +
                                    "\"");
    return number;
}

std::vector<sim::LineSpec> pleasantLines()
{
    sim::LineSpec tovin;
    sim::setLineValue(tovin, "kind", "tovin-r");
    sim::setLineValue(tovin, "addresses", "2+5");
    return {sim::LineSpec{}, sim::LineSpec{}, tovin};
}

// The lines asked for, without their COM numbers from --com.
std::vector<sim::LineSpec> describedLines(const QCommandLineParser &parser)
{
    sim::LineSpec common;
    bool described = false;
    for (const ValueOption &option : unitOptions) {
        if (!parser.isSet(QString::fromLatin1(option.name)))
            continue;
        described = true;
        for (const QString &value : parser.values(QString::fromLatin1(option.name)))
            sim::setLineValue(common, option.name, value.toStdString());
    }
    common.paced = parser.isSet(QStringLiteral("paced"));

    const QStringList texts = parser.values(QStringLiteral("line"));
    const int count = numberOption(parser, "lines", texts.isEmpty() ? 1 : 0, mostLines);
    if (texts.isEmpty() && !described && !parser.isSet(QStringLiteral("lines"))) {
        auto lines = pleasantLines();
        for (sim::LineSpec &line : lines)
            line.paced = common.paced;
        return lines;
    }
    std::vector<sim::LineSpec> lines(static_cast<std::size_t>(count), common);
    for (const QString &text : texts)
        lines.push_back(sim::parseLineSpec(text.toStdString(), common));
    return lines;
}

std::vector<sim::LineSpec> linesFrom(const QCommandLineParser &parser)
{
    if (!parser.positionalArguments().isEmpty())
        throw std::invalid_argument("\"" + parser.positionalArguments().constFirst().toStdString() +
                                    "\" is no option");
    auto lines = describedLines(parser);
    const QStringList numbers = parser.values(QStringLiteral("com"));
    for (const QString &number : numbers) {
        const auto next = std::find_if(lines.begin(), lines.end(),
                                       [](const auto &line) { return line.com == 0; });
        if (next == lines.end())
            throw std::invalid_argument("there are more COM numbers than lines");
        sim::setLineValue(*next, "com", number.toStdString());
    }
    for (auto line = lines.begin(); line != lines.end(); ++line)
        if (line->com != 0 && std::any_of(lines.begin(), line, [&](const auto &other) {
                return other.com == line->com;
            }))
            throw std::invalid_argument("COM" + std::to_string(line->com) + " is given twice");
    return lines;
}

std::string printable(const std::string &text)
{
    std::string shown;
    for (const char c : text) {
        std::array<char, 5> code{};
        std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(c));
        shown += c >= ' ' && c <= '~' ? std::string(1, c) : std::string(code.data());
    }
    return shown;
}

// Whole lines at once, from the threads of all lines.
void print(const std::string &text)
{
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    std::cout << text << '\n' << std::flush;
}

void logExchange(sim::SimulatedLine &line, int number)
{
    line.setListener([number](bool fromUnit, const std::string &text) {
        print("COM" + std::to_string(number) + (fromUnit ? "    <- " : " -> ") + printable(text));
    });
}

// Another simulator may take the number between the look and the link.
sim::ComPortLink linkUnderFreeNumber(int first, const std::vector<int> &alsoTaken,
                                     const std::string &device)
{
    while (true) {
        const int number = sim::freeNumber(first, alsoTaken);
        if (number == 0)
            throw std::runtime_error("no COM number is free");
        try {
            return {number, device};
        } catch (const std::system_error &error) {
            if (error.code() != std::errc::file_exists)
                throw;
            first = number + 1;
        }
    }
}

std::vector<Served> serve(const std::vector<sim::LineSpec> &specs, int first)
{
    sim::removeStaleLinks();
    std::vector<int> explicitNumbers;
    explicitNumbers.reserve(specs.size());
    for (const sim::LineSpec &spec : specs)
        explicitNumbers.push_back(spec.com);
    std::vector<Served> served;
    for (const sim::LineSpec &spec : specs) {
        auto line = sim::makeLine(spec);
        auto link = spec.com != 0 ? sim::ComPortLink(spec.com, line->device())
                                  : linkUnderFreeNumber(first, explicitNumbers, line->device());
        served.push_back({std::move(line), std::move(link)});
    }
    return served;
}

void waitForEnd(const sigset_t &endSignals)
{
    int signal = 0;
    while (sigwait(&endSignals, &signal) != 0) {
    }
}

int run(const QCommandLineParser &parser, const std::vector<sim::LineSpec> &specs, int first,
        const sigset_t &endSignals)
{
    const auto served = serve(specs, first);
    for (std::size_t i = 0; i < served.size(); ++i) {
        if (parser.isSet(QStringLiteral("log")))
            logExchange(*served[i].line, served[i].link.number());
        if (!parser.isSet(QStringLiteral("quiet")))
            print("COM" + std::to_string(served[i].link.number()) + "  " + specs[i].describe() +
                  "  (" + served[i].line->device() + ")");
    }
    waitForEnd(endSignals);
    return 0;
}

// The signals that end the program. Blocked before any thread is started, so that all threads leave
// them to the wait at the end.
sigset_t blockedEndSignals()
{
    sigset_t endSignals;
    sigemptyset(&endSignals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&endSignals, signal);
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);
    return endSignals;
}

int fail(const std::string &text, int code)
{
    std::cerr << "keldo-x-sim: " << text << '\n';
    return code;
}

} // namespace

int main(int argc, char *argv[])
{
    const sigset_t endSignals = blockedEndSignals();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("keldo-x-sim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELDOX_VERSION));
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(parser.errorText().toStdString(), badOptions);
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    try {
        const auto specs = linesFrom(parser);
        return run(parser, specs, numberOption(parser, "first", firstNumber, 255), endSignals);
    } catch (const std::invalid_argument &error) {
        return fail(error.what(), badOptions);
    } catch (const std::exception &error) {
        return fail(error.what(), 1);
    }
}
