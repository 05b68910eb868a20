// The text of the IO monitor's display: lines are added at its end, and what gets too long is cut
// at its beginning. It counts what passes through it, so that a window can draw only what changed.
#pragma once

#include <QString>

class DisplayText
{
public:
    // Beyond so many characters, CR LF counted as two, the text is cut by proportion: not at every
    // line, as it would be to a fixed size.
    static constexpr int limit = 8000;

    void addLine(const QString &line); // and a line break
    // A bare line break is not cut behind, unless nothing else comes at all.
    void addLineBreak();
    void clear();

    const QString &text() const { return m_text; }
    // Where the text begins and ends in all that was ever added.
    qint64 begin() const { return m_begin; }
    qint64 end() const { return m_begin + m_text.size(); }

private:
    void cutBeyond(qsizetype length);
    void cut(qsizetype characters);

    QString m_text; // with CR LF line ends
    qint64 m_begin = 0;
};
