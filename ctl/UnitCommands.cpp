// The commands that read and set one unit's values.
#include "core/StoredPreset.h"
#include "core/TextNumbers.h"
#include "ctl/Commands.h"
#include "ctl/Print.h"
#include "ctl/Setting.h"
#include "platform/EventQueue.h"

#include <QScopeGuard>

namespace {

QString nameOf(const Property &property)
{
    return QString::fromLatin1(property.name);
}

const Property &knownProperty(const QString &name)
{
    if (const Property *property = propertyNamed(name))
        return *property;
    throw Failure(Exit::WrongUse,
                  QStringLiteral("There is no value \"%1\" (see keldo-x-ctl --help)").arg(name));
}

// Reads what the command line names, or else all that the unit has, and prints it.
class Reading
{
public:
    explicit Reading(const Request &request) : m_request(request), m_link(request) {}

    Exit run(const QList<const Property *> &wanted);

private:
    void read(const Property &property, bool mustHave);

    const Request &m_request;
    UnitLink m_link;
    QJsonObject m_values;
};

void Reading::read(const Property &property, bool mustHave)
{
    if (property.isSetByAGC && !mustHave && m_values[QStringLiteral("agc")].toBool())
        return;
    m_link.begin();
    try {
        requireOffered(m_link, property);
    } catch (const Failure &failure) {
        if (mustHave || failure.code() != Exit::Refused)
            throw;
        return;
    }
    const QJsonValue value = property.read(m_link.unit());
    if (value.isUndefined())
        throw m_link.failure(QStringLiteral("asked for its %1").arg(nameOf(property)));
    m_values[nameOf(property)] = value;
    if (!m_request.json)
        Print::line(lineOf(property, value));
}

// A bad answer keeps nobody from reading the next value; silence does.
Exit Reading::run(const QList<const Property *> &wanted)
{
    m_link.connect();
    const auto printed = qScopeGuard([this] {
        if (m_request.json)
            Print::json(m_values);
    });
    Exit result = Exit::Done;
    for (const Property *property : wanted) {
        try {
            read(*property, !m_request.words.isEmpty());
        } catch (const Failure &failure) {
            if (failure.code() != Exit::Refused || EventQueue::ending())
                throw;
            Print::message(failure.text());
            result = failure.code();
        }
    }
    return result;
}

struct Assignment
{
    const Property *property;
    QJsonValue value;
};

// "step 1860" is another property's name for a frequency.
Assignment assignment(const QString &name, QString text)
{
    const Property *property = &knownProperty(name);
    if (name == QLatin1String("frequency") &&
        text.startsWith(QLatin1String("step "), Qt::CaseInsensitive)) {
        property = propertyNamed(QStringLiteral("step"));
        text.remove(0, 5);
    }
    if (!property->parse)
        throw Failure(Exit::WrongUse, QStringLiteral("%1 can only be read").arg(nameOf(*property)));
    const QJsonValue value = property->parse(text);
    if (value.isUndefined())
        throw Failure(Exit::WrongUse,
                      QStringLiteral("\"%1\" is no value for %2: it takes %3")
                          .arg(text, nameOf(*property), QString::fromLatin1(property->values)));
    return {property, value};
}

// A value is one word, and all that follow up to the next name: "frequency 146.5 MHz agc on".
QList<Assignment> assignments(const QStringList &words)
{
    QList<Assignment> all;
    for (qsizetype i = 0; i < words.size();) {
        const QString &name = words.at(i++);
        knownProperty(name);
        if (i == words.size())
            throw Failure(Exit::WrongUse, QStringLiteral("%1 needs a value").arg(name));
        QString text = words.at(i++);
        while (i < words.size() && !propertyNamed(words.at(i)))
            text += QLatin1Char(' ') + words.at(i++);
        all.append(assignment(name, text));
    }
    return all;
}

Exit assign(const Request &request, const QList<Assignment> &wanted)
{
    UnitLink link(request);
    link.connect();
    QJsonObject confirmed;
    const auto printed = qScopeGuard([&] {
        if (request.json)
            Print::json(confirmed);
    });
    for (const Assignment &next : wanted) {
        const QJsonValue value = settingOf(link, *next.property, next.value);
        confirmed[nameOf(*next.property)] = value;
        if (!request.json)
            Print::line(lineOf(*next.property, value));
    }
    return Exit::Done;
}

void requireOneLine(const QString &line)
{
    if (line.isEmpty() || line.contains(QLatin1Char('\r')) || line.contains(QLatin1Char('\n')))
        throw Failure(Exit::WrongUse, QStringLiteral("\"raw\" sends one line"));
    if (QString::fromLatin1(line.toLatin1()) != line)
        throw Failure(Exit::WrongUse, QStringLiteral("The line has characters that a unit's line "
                                                     "cannot carry"));
}

void listPresets(const Request &request)
{
    QJsonArray all;
    for (int index = StoredPreset::first; index <= StoredPreset::last; ++index) {
        const double megahertz = StoredPreset::read(index);
        const bool isSet = megahertz > 0;
        all.append(isSet ? QJsonValue(megahertz) : QJsonValue());
        if (!request.json)
            Print::line(QStringLiteral("preset %1  %2")
                            .arg(index - StoredPreset::first + 1)
                            .arg(isSet ? numberToText(megahertz) + QStringLiteral(" MHz")
                                       : QStringLiteral("not set")));
    }
    if (request.json)
        Print::json(all);
}

} // namespace

Exit Commands::get(const Request &request)
{
    QList<const Property *> wanted;
    for (const QString &name : request.words)
        wanted.append(&knownProperty(name));
    if (wanted.isEmpty())
        for (const Property &property : properties())
            wanted.append(&property);
    return Reading(request).run(wanted);
}

Exit Commands::set(const Request &request)
{
    return assign(request, assignments(request.words));
}

Exit Commands::raw(const Request &request)
{
    const QString line = request.words.first();
    requireOneLine(line);
    UnitLink link(request);
    link.open();
    const QString reply = link.unit().deviceWrite(line);
    if (link.isLost() || !link.wire().isComplete())
        throw link.failure(QStringLiteral("the line was sent"));
    if (request.json)
        Print::json(QJsonObject{{QStringLiteral("reply"), reply}});
    else
        Print::line(reply);
    const bool isDone = !ReplyText::isErrorWord(reply) && !ReplyText::isRefused(reply) &&
                        reply != QLatin1String("NUMBER OUT OF RANGE");
    return isDone ? Exit::Done : Exit::Refused;
}

Exit Commands::preset(const Request &request)
{
    if (request.words.isEmpty()) {
        listPresets(request);
        return Exit::Done;
    }
    bool isNumber = false;
    const int index = request.words.first().toInt(&isNumber) + StoredPreset::first - 1;
    if (!isNumber || index < StoredPreset::first || index > StoredPreset::last)
        throw Failure(Exit::WrongUse, QStringLiteral("The presets are 1 to 4"));
    const double megahertz = StoredPreset::read(index);
    if (megahertz <= 0)
        throw Failure(Exit::WrongUse,
                      QStringLiteral("Preset %1 is not set: the program's main window sets it")
                          .arg(request.words.first()));
    return assign(request, {{propertyNamed(QStringLiteral("frequency")), megahertz}});
}
