// Drawing what changed in the display's text.
#include "ui/monitor/EventPane.h"

#include "ui/monitor/DisplayText.h"

#include <QScrollBar>
#include <QTextBlock>

EventPane::EventPane(QWidget *parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    // The keyboard, too, can select what is to be copied.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

bool EventPane::standsAtEnd() const
{
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

void EventPane::showText(const DisplayText &display)
{
    if (m_begin == display.begin() && m_end == display.end())
        return;
    const bool follows = standsAtEnd();
    if (display.begin() >= m_end) {
        m_folds.clear();
        setPlainText(folded(display.text(), display.begin()));
    } else {
        const QTextCursor top = cursorForPosition(QPoint(0, 0));
        removeCut(display);
        addNew(display);
        if (!follows)
            scrollTo(top);
    }
    m_begin = display.begin();
    m_end = display.end();
    if (!follows)
        return;
    // The caret goes to the end, where the newest line is; it would take a selection away.
    if (!textCursor().hasSelection())
        moveCursor(QTextCursor::End);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

static bool isBreak(QChar character)
{
    return character == QLatin1Char('\r') || character == QLatin1Char('\n') ||
           character == QChar::ParagraphSeparator;
}

// The text, which begins with a line, as the document gets it.
QString EventPane::folded(const QString &text, qint64 at)
{
    QString result;
    qsizetype taken = 0;
    qsizetype length = 0; // of the paragraph
    for (qsizetype i = 0; i < text.size(); ++i) {
        length = isBreak(text.at(i)) ? 0 : length + 1;
        if (length <= longestParagraph)
            continue;
        result.append(QStringView(text).mid(taken, i - taken)).append(QLatin1Char('\n'));
        m_folds.append(at + i);
        taken = i;
        length = 1;
    }
    return result.append(QStringView(text).mid(taken));
}

void EventPane::removeCut(const DisplayText &display)
{
    while (!m_folds.isEmpty() && m_folds.first() <= display.begin())
        m_folds.removeFirst();
    const QString kept = display.text().left(m_end - display.begin());
    // The document counts a CR LF as one character.
    const auto left = kept.size() - kept.count(QLatin1String("\r\n")) + m_folds.size();
    QTextCursor edit(document());
    edit.setPosition(document()->characterCount() - 1 - static_cast<int>(left),
                     QTextCursor::KeepAnchor);
    edit.removeSelectedText();
}

void EventPane::addNew(const DisplayText &display)
{
    // A selection that ends where the text ends would take the new text in.
    const int anchor = textCursor().anchor();
    const int position = textCursor().position();
    QTextCursor edit(document());
    edit.movePosition(QTextCursor::End);
    edit.insertText(folded(display.text().mid(m_end - display.begin()), m_end));
    if (textCursor().anchor() == anchor && textCursor().position() == position)
        return;
    QTextCursor held(document());
    held.setPosition(anchor);
    held.setPosition(position, QTextCursor::KeepAnchor);
    setTextCursor(held);
}

void EventPane::scrollTo(const QTextCursor &top)
{
    const QTextLine line = top.block().layout()->lineForTextPosition(top.positionInBlock());
    verticalScrollBar()->setValue(top.block().firstLineNumber() +
                                  (line.isValid() ? line.lineNumber() : 0));
}
