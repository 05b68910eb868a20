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
        setPlainText(display.text());
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

// The document counts a CR LF as one character.
static int documentLength(const QString &text)
{
    return static_cast<int>(text.size() - text.count(QLatin1String("\r\n")));
}

void EventPane::removeCut(const DisplayText &display)
{
    const QString kept = display.text().left(m_end - display.begin());
    const int stale = document()->characterCount() - 1 - documentLength(kept);
    QTextCursor edit(document());
    edit.setPosition(stale, QTextCursor::KeepAnchor);
    edit.removeSelectedText();
}

void EventPane::addNew(const DisplayText &display)
{
    // A selection that ends where the text ends would take the new text in.
    const int anchor = textCursor().anchor();
    const int position = textCursor().position();
    QTextCursor edit(document());
    edit.movePosition(QTextCursor::End);
    edit.insertText(display.text().mid(m_end - display.begin()));
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
