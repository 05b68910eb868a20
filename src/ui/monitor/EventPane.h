// The text box that shows the display's text. It follows the text by what was added and cut since
// the last time, so that selection and scroll position stay; it follows the end only while it
// stands there.
#pragma once

#include <QPlainTextEdit>

class DisplayText;

class EventPane : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit EventPane(QWidget *parent = nullptr);

    void showText(const DisplayText &display);
    bool standsAtEnd() const;

private:
    void removeCut(const DisplayText &display);
    void addNew(const DisplayText &display);
    void scrollTo(const QTextCursor &top);

    qint64 m_begin = 0; // as the display counts
    qint64 m_end = 0;
};
