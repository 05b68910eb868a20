// What is kept of the display's text.
#include "ui/monitor/DisplayText.h"

#include "core/TextNumbers.h"

static constexpr double keptShare = 0.8; // of an overlong text

static const QLatin1String lineBreak("\r\n");

void DisplayText::addLine(const QString &line)
{
    m_text.append(line).append(lineBreak);
    cutBeyond(limit);
}

void DisplayText::addLineBreak()
{
    m_text.append(lineBreak);
    cutBeyond(qsizetype{2} * limit);
}

void DisplayText::clear()
{
    cut(m_text.size());
}

void DisplayText::cutBeyond(qsizetype length)
{
    const auto size = m_text.size();
    if (size > length)
        cut(size - static_cast<qsizetype>(roundHalfEven(keptShare * static_cast<double>(size))));
}

void DisplayText::cut(qsizetype characters)
{
    m_text.remove(0, characters);
    m_begin += characters;
}
