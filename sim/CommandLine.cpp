// Reading the command line of keldo-x-sim.
#include "sim/CommandLine.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace sim {

namespace {

constexpr int mostLines = 64;

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

void addNumbers(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("com"),
                      QStringLiteral("COM number of the next line; may be repeated."),
                      QStringLiteral("number")});
    parser.addOption({QStringLiteral("first"),
                      QStringLiteral("Lowest COM number for lines without one of their own, 3 by "
                                     "default: lower ones are left to real ports."),
                      QStringLiteral("number")});
}

void addOutput(QCommandLineParser &parser)
{
    parser.addOption(
        {QStringLiteral("paced"), QStringLiteral("Keeps the pace of 19200 baud, 10 bits a byte.")});
    parser.addOption({QStringLiteral("list"), QStringLiteral("Lists the lines and ends.")});
    parser.addOption({QStringLiteral("stdio"),
                      QStringLiteral("Serves the line with this number of the list on standard "
                                     "input and output, until the input ends."),
                      QStringLiteral("number")});
    parser.addOption({QStringLiteral("log"),
                      QStringLiteral("Prints commands and replies, on standard error with "
                                     "--stdio.")});
    parser.addOption({{QStringLiteral("q"), QStringLiteral("quiet")},
                      QStringLiteral("Does not list the lines.")});
}

std::vector<LineSpec> pleasantLines()
{
    LineSpec tovin;
    setLineValue(tovin, "kind", "tovin-r");
    setLineValue(tovin, "addresses", "2+5");
    return {LineSpec{}, LineSpec{}, tovin};
}

// The lines asked for, without their COM numbers from --com.
std::vector<LineSpec> describedLines(const QCommandLineParser &parser)
{
    LineSpec common;
    bool described = false;
    for (const ValueOption &option : unitOptions) {
        if (!parser.isSet(QString::fromLatin1(option.name)))
            continue;
        described = true;
        for (const QString &value : parser.values(QString::fromLatin1(option.name)))
            setLineValue(common, option.name, value.toStdString());
    }
    common.paced = parser.isSet(QStringLiteral("paced"));

    const QStringList texts = parser.values(QStringLiteral("line"));
    const int count = numberOption(parser, "lines", texts.isEmpty() ? 1 : 0, mostLines);
    if (texts.isEmpty() && !described && !parser.isSet(QStringLiteral("lines"))) {
        auto lines = pleasantLines();
        for (LineSpec &line : lines)
            line.paced = common.paced;
        return lines;
    }
    std::vector<LineSpec> lines(static_cast<std::size_t>(count), common);
    for (const QString &text : texts)
        lines.push_back(parseLineSpec(text.toStdString(), common));
    return lines;
}

} // namespace

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
    addNumbers(parser);
    addOutput(parser);
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

std::vector<LineSpec> linesFrom(const QCommandLineParser &parser)
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
        setLineValue(*next, "com", number.toStdString());
    }
    for (auto line = lines.begin(); line != lines.end(); ++line)
        if (line->com != 0 && std::any_of(lines.begin(), line, [&](const auto &other) {
                return other.com == line->com;
            }))
            throw std::invalid_argument("COM" + std::to_string(line->com) + " is given twice");
    return lines;
}

} // namespace sim
