// The beginning of a text that may be of any length.
#pragma once

#include <QString>

// One log line shows so many characters of a text, and how many more there were.
constexpr qsizetype longestLine = 2000;

// The text itself up to longestLine characters; beyond, its first ones and the count of the others,
// "more" ones included that the caller left out.
inline QString startOfText(const QString &text, qsizetype more = 0)
{
    if (text.size() <= longestLine && more == 0)
        return text;
    const QString start = text.left(longestLine);
    return start +
           QStringLiteral("... (%1 more characters)").arg(text.size() - start.size() + more);
}
