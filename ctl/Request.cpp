// The command line over Qt's parser.
#include "ctl/Request.h"

#include "core/TextNumbers.h"
#include "ctl/Failure.h"
#include "discovery/PortSearch.h"
#include "platform/Application.h"
#include "platform/PortDirectory.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <cstdio>
#include <limits>
#include <string>

namespace {

struct Command
{
    const char *name;
    int fewest = 0; // words behind it
    int most = 0;
    bool needsPort = true;
    QStringList options = {}; // beside those that every command takes
};

const QList<Command> &commands()
{
    constexpr int any = std::numeric_limits<int>::max();
    static const QString interval = QStringLiteral("interval");
    static const QList<Command> all{
        {.name = "ports", .needsPort = false},
        {.name = "search", .needsPort = false},
        {.name = "get", .most = any},
        {.name = "set", .fewest = 2, .most = any},
        {.name = "watch", .options = {interval, QStringLiteral("count")}},
        {.name = "raw", .fewest = 1, .most = 1},
        {.name = "preset", .most = 1, .needsPort = false},
        {.name = "follow",
         .fewest = 1,
         .most = 1,
         .options = {interval, QStringLiteral("offset"), QStringLiteral("tuning-step"),
                     QStringLiteral("min"), QStringLiteral("max")}}};
    return all;
}

Failure wrongUse(const QString &what)
{
    return {Exit::WrongUse, what + QStringLiteral(" (see keldo-x-ctl --help)")};
}

const Command &commandNamed(const QString &name)
{
    for (const Command &command : commands())
        if (name == QLatin1String(command.name))
            return command;
    throw wrongUse(QStringLiteral("There is no command \"%1\"").arg(name));
}

// A negative value is no option: for the parser its minus becomes another sign.
constexpr QChar shieldedMinus(0x2212);

QString shielded(QString word)
{
    static const QRegularExpression negative(QStringLiteral(R"(^-\.?\d)"));
    if (negative.match(word).hasMatch())
        word[0] = shieldedMinus;
    return word;
}

QString bare(QString word)
{
    if (word.startsWith(shieldedMinus))
        word[0] = QLatin1Char('-');
    return word;
}

QString lineOfStandardInput()
{
    std::string line;
    for (int next = std::getchar(); next != EOF && next != '\n'; next = std::getchar())
        line.push_back(static_cast<char>(next));
    return QString::fromLocal8Bit(line.data(), static_cast<qsizetype>(line.size()));
}

class Parser
{
public:
    explicit Parser(const QStringList &arguments);

    Request request() const;

private:
    void checkUse(const Request &request) const;
    void readOptions(Request &request) const;
    void readPort(Request &request) const;
    int wholeNumber(const QString &option, int lowest, int highest) const;
    int milliseconds(const QString &option) const;
    double megahertz(const QString &option) const;
    bool has(const char *option) const { return m_parser.isSet(QString::fromLatin1(option)); }
    QString valueOf(const QString &option) const { return bare(m_parser.value(option)); }

    QCommandLineParser m_parser;
    QStringList m_own; // options that only some commands take
};

Parser::Parser(const QStringList &arguments)
{
    for (const char *flag : {"json", "verbose", "simulator"})
        m_parser.addOption(QCommandLineOption(QString::fromLatin1(flag)));
    m_parser.addOption(
        QCommandLineOption(QStringList{QStringLiteral("h"), QStringLiteral("help")}));
    m_parser.addOption(
        QCommandLineOption(QStringList{QStringLiteral("v"), QStringLiteral("version")}));
    for (const char *name : {"port", "address", "timeout"})
        m_parser.addOption({QString::fromLatin1(name), {}, QStringLiteral("value")});
    for (const Command &command : commands())
        for (const QString &name : command.options)
            if (!m_own.contains(name)) {
                m_own.append(name);
                m_parser.addOption({name, {}, QStringLiteral("value")});
            }
    // The parser takes the first word for the program's name.
    QStringList words{QStringLiteral("keldo-x-ctl")};
    for (const QString &argument : arguments)
        words.append(shielded(argument));
    if (!m_parser.parse(words))
        throw wrongUse(bare(m_parser.errorText()));
}

Request Parser::request() const
{
    Request request;
    if (has("help"))
        request.text = usage();
    else if (has("version"))
        request.text = QStringLiteral("keldo-x-ctl %1\n").arg(applicationVersion());
    if (!request.text.isEmpty())
        return request;
    for (const QString &word : m_parser.positionalArguments())
        request.words.append(bare(word));
    if (request.words.isEmpty())
        throw wrongUse(QStringLiteral("Which command?"));
    request.command = request.words.takeFirst();
    readOptions(request);
    readPort(request);
    checkUse(request);
    if (request.command == QLatin1String("raw") && request.words.first() == QLatin1String("-"))
        request.words.first() = lineOfStandardInput();
    return request;
}

void Parser::checkUse(const Request &request) const
{
    const Command &command = commandNamed(request.command);
    const auto words = request.words.size();
    if (words < command.fewest)
        throw wrongUse(QStringLiteral("\"%1\" needs more words").arg(request.command));
    if (words > command.most)
        throw wrongUse(QStringLiteral("\"%1\" does not take \"%2\"")
                           .arg(request.command, request.words.at(command.most)));
    for (const QString &option : m_own)
        if (m_parser.isSet(option) && !command.options.contains(option))
            throw wrongUse(
                QStringLiteral("\"%1\" does not take --%2").arg(request.command, option));
    // The list of presets is read without a unit.
    const bool needsPort =
        command.needsPort || (request.command == QLatin1String("preset") && words > 0);
    if (needsPort && !request.port)
        throw wrongUse(QStringLiteral("Which port? Name it with --port, \"keldo-x-ctl ports\" "
                                      "lists them"));
}

void Parser::readOptions(Request &request) const
{
    request.json = has("json");
    request.verbose = has("verbose");
    request.simulator = has("simulator");
    if (has("timeout"))
        request.timeout = milliseconds(QStringLiteral("timeout"));
    if (has("interval"))
        request.interval = milliseconds(QStringLiteral("interval"));
    if (has("count"))
        request.count = wholeNumber(QStringLiteral("count"), 1, std::numeric_limits<int>::max());
    if (has("offset"))
        request.offset = megahertz(QStringLiteral("offset"));
    if (has("tuning-step"))
        request.tuningStep = megahertz(QStringLiteral("tuning-step"));
    if (has("min"))
        request.lowest = megahertz(QStringLiteral("min"));
    if (has("max"))
        request.highest = megahertz(QStringLiteral("max"));
    if (request.tuningStep < 0)
        throw wrongUse(QStringLiteral("--tuning-step is not negative"));
    if (request.lowest && request.highest && *request.lowest > *request.highest)
        throw wrongUse(QStringLiteral("--min is above --max"));
}

// "COM5", "5", "COM5:3" or "/dev/ttyUSB0".
void Parser::readPort(Request &request) const
{
    static const QRegularExpression pattern(QStringLiteral(R"(^(?:COM)?(\d{1,3})(?::(\d{1,2}))?$)"),
                                            QRegularExpression::CaseInsensitiveOption);
    if (has("address"))
        request.address = static_cast<std::int16_t>(
            wholeNumber(QStringLiteral("address"), 1, PortSearch::lastAddress));
    if (!has("port"))
        return;
    const QString name = valueOf(QStringLiteral("port"));
    if (name.contains(QLatin1Char('/'))) {
        request.port = name;
        return;
    }
    const auto match = pattern.match(name);
    const int number = match.captured(1).toInt();
    const bool hasAddress = match.capturedLength(2) > 0;
    const std::int16_t address = match.captured(2).toShort();
    if (!match.hasMatch() || number < 1 || number > PortDirectory::lastNumber ||
        (hasAddress && (has("address") || address < 1 || address > PortSearch::lastAddress)))
        throw wrongUse(
            QStringLiteral("\"%1\" is no port: COM1 to COM255, or a device's path").arg(name));
    request.port = QString::number(number);
    if (hasAddress)
        request.address = address;
}

int Parser::wholeNumber(const QString &option, int lowest, int highest) const
{
    bool isNumber = false;
    const int number = valueOf(option).toInt(&isNumber);
    if (!isNumber || number < lowest || number > highest)
        throw wrongUse(QStringLiteral("--%1 \"%2\" is no number of %3 or above")
                           .arg(option, valueOf(option))
                           .arg(lowest) +
                       (highest < std::numeric_limits<int>::max()
                            ? QStringLiteral(" up to %1").arg(highest)
                            : QString()));
    return number;
}

// Given in seconds: a thousandth of one to a day.
int Parser::milliseconds(const QString &option) const
{
    const QString text = valueOf(option);
    const double seconds = isNumeric(text) ? numericValue(text) : 0;
    if (seconds < 0.001 || seconds > 86400)
        throw wrongUse(QStringLiteral("--%1 \"%2\" is no number of seconds").arg(option, text));
    return static_cast<int>(roundHalfEven(seconds * 1000));
}

double Parser::megahertz(const QString &option) const
{
    const auto value = frequencyInMHz(valueOf(option));
    if (!value)
        throw wrongUse(QStringLiteral("--%1 \"%2\" is no frequency, as 12.5kHz or 146.5 (MHz)")
                           .arg(option, valueOf(option)));
    return *value;
}

} // namespace

Request requestOf(const QStringList &arguments)
{
    return Parser(arguments).request();
}

std::int16_t Request::portNumber() const
{
    const QString name = port.value_or(QString());
    return static_cast<std::int16_t>(
        name.contains(QLatin1Char('/')) ? PortDirectory::instance().numberOf(name) : name.toInt());
}
