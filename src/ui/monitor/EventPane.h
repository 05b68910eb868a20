// The text box that shows the display's text. It follows the text by what was added and cut since
// the last time, so that selection and scroll position stay; it follows the end only while it
// stands there.
#pragma once

#include <QList>
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
    QString folded(const QString &text, qint64 at);
    void removeCut(const DisplayText &display);
    void addNew(const DisplayText &display);
    void scrollTo(const QTextCursor &top);

    // What no log line reaches is laid out in paragraphs of so many characters: the time that one
    // takes grows with the square of its length.
    static constexpr int longestParagraph = 4000;

    qint64 m_begin = 0; // as the display counts
    qint64 m_end = 0;
    QList<qint64> m_folds; // before these characters
};
