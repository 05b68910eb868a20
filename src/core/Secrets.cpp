// Passwords and the texts without them.
#include "core/Secrets.h"

#include <QRegularExpression>
#include <QStringMatcher>

#include <algorithm>

namespace {

constexpr int shortestInsideWords = 4;

const QString &passwordWord()
{
    static const QString word = QStringLiteral("PASSWORD");
    return word;
}

const QString &passwordStart()
{
    static const QString start = QStringLiteral("PASSWORD ");
    return start;
}

const QString &mask()
{
    static const QString stars = QStringLiteral("****");
    return stars;
}

qsizetype endOfLine(const QString &text, qsizetype from)
{
    while (from < text.size() && text.at(from) != QLatin1Char('\r') &&
           text.at(from) != QLatin1Char('\n'))
        ++from;
    return from;
}

bool standsAlone(const QString &text, qsizetype at, qsizetype length)
{
    const auto isWord = [&](qsizetype i) {
        return i >= 0 && i < text.size() && text.at(i).isLetterOrNumber();
    };
    return !isWord(at - 1) && !isWord(at + length);
}

void maskCommands(QString &text)
{
    // Prepared once: it looks through every event of the log.
    static const QStringMatcher start(passwordStart(), Qt::CaseInsensitive);
    static const QString masked = passwordStart() + mask();
    for (auto at = start.indexIn(text); at >= 0; at = start.indexIn(text, at + masked.size()))
        text.replace(at, endOfLine(text, at) - at, masked);
}

void maskPassword(QString &text, const QString &password)
{
    for (auto at = text.indexOf(password, 0, Qt::CaseInsensitive); at >= 0;) {
        if (password.size() >= shortestInsideWords || standsAlone(text, at, password.size())) {
            text.replace(at, password.size(), mask());
            at += mask().size();
        } else {
            ++at;
        }
        at = text.indexOf(password, at, Qt::CaseInsensitive);
    }
}

// How much of the text's end is the beginning of the word, but not all of it.
qsizetype tailOf(const QString &text, const QString &word)
{
    qsizetype length = std::min(text.size(), word.size() - 1);
    while (length > 0 && !word.startsWith(QStringView(text).right(length), Qt::CaseInsensitive))
        --length;
    return length;
}

} // namespace

bool Secrets::noteCommand(const QString &text)
{
    static const QRegularExpression lineBreaks(QStringLiteral("[\\r\\n]"));
    bool isOne = false;
    for (const QString &line : text.split(lineBreaks)) {
        auto at = line.indexOf(passwordStart(), 0, Qt::CaseInsensitive);
        if (at < 0 && line.trimmed().startsWith(passwordWord(), Qt::CaseInsensitive))
            at = line.indexOf(passwordWord(), 0, Qt::CaseInsensitive);
        if (at < 0)
            continue;
        isOne = true;
        const QString password = line.mid(at + passwordWord().size()).trimmed();
        // A line carries Latin-1: this is how it comes back.
        for (const QString &form : {password, QString::fromLatin1(password.toLatin1())})
            if (!form.isEmpty() && !m_passwords.contains(form, Qt::CaseInsensitive))
                m_passwords.append(form);
    }
    std::stable_sort(m_passwords.begin(), m_passwords.end(),
                     [](const QString &a, const QString &b) { return a.size() > b.size(); });
    return isOne;
}

QString Secrets::masked(const QString &text) const
{
    QString result = text;
    maskCommands(result);
    for (const QString &password : m_passwords)
        maskPassword(result, password);
    return result;
}

qsizetype Secrets::unfinishedAt(const QString &text) const
{
    if (m_passwords.isEmpty())
        return text.size();
    const auto command = text.lastIndexOf(passwordStart(), -1, Qt::CaseInsensitive);
    if (command >= 0 && endOfLine(text, command) == text.size())
        return command;
    qsizetype tail = tailOf(text, passwordStart());
    for (const QString &password : m_passwords)
        tail = std::max(tail, tailOf(text, password));
    return text.size() - tail;
}

Secrets &secrets()
{
    static Secrets all;
    return all;
}
