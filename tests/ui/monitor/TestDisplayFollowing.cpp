// How the monitor's text box follows the display's text: by what changed, and without taking away
// what the operator selected or looks at.
#include "MonitorBench.h"
#include "support/TestMain.h"

#include "ui/monitor/DisplayText.h"
#include "ui/monitor/EventPane.h"

#include <QRandomGenerator>
#include <QScrollBar>
#include <QTextBlock>

namespace {

QString lineText(int number)
{
    return QStringLiteral("line %1").arg(number);
}

// A pane of some ten lines on the screen.
struct Shown
{
    Shown()
    {
        pane.resize(300, 10 * QFontMetrics(pane.font()).lineSpacing());
        pane.show();
    }

    void add(int from, int to)
    {
        for (int i = from; i <= to; ++i)
            text.addLine(lineText(i));
        pane.showText(text);
    }
    void select(const QString &words)
    {
        pane.setTextCursor(pane.document()->find(words));
        QCOMPARE(pane.textCursor().selectedText(), words);
    }
    QString topLine() const { return pane.cursorForPosition(QPoint(0, 0)).block().text(); }
    bool isCaretInView() const
    {
        return pane.viewport()->rect().contains(pane.cursorRect().center());
    }

    Fixture fixture;
    DisplayText text;
    EventPane pane;
};

} // namespace

class TestDisplayFollowing : public QObject
{
    Q_OBJECT

private slots:
    void onlyWhatChangedIsDrawn();
    void nothingNewDrawsNothing();
    void itShowsTheTextWhateverComes();
    void aLineWithoutEndIsFolded();
    void theEndIsFollowed();
    void whoScrolledBackStaysThere();
    void whoScrollsToTheEndFollowsAgain();
    void theLineInViewStaysWhileTheBeginningIsCut();
    void aSelectionStays();
    void aSelectionAtTheEndDoesNotGrow();
    void aSelectionStaysWhileTheEndIsFollowed();
    void clearingEmptiesIt();
};

void TestDisplayFollowing::onlyWhatChangedIsDrawn()
{
    Shown shown;
    shown.add(1, 100);
    QList<QList<int>> changes;
    connect(shown.pane.document(), &QTextDocument::contentsChange, this,
            [&](int at, int removed, int added) {
                changes.append({at, removed, added});
            });
    const auto length = static_cast<int>(shown.pane.toPlainText().size());
    shown.add(101, 101);
    QCOMPARE(changes, (QList<QList<int>>{{length, 0, 9}}));
    // And what is cut goes from the beginning alone.
    changes.clear();
    while (shown.text.begin() == 0)
        shown.text.addLine(QStringLiteral("more"));
    shown.pane.showText(shown.text);
    QCOMPARE(changes.size(), 2);
    QCOMPARE(changes.at(0).mid(0, 1) + changes.at(0).mid(2), (QList<int>{0, 0}));
    QVERIFY(changes.at(0).at(1) < 1600);
    QCOMPARE(changes.at(1).at(1), 0);
}

void TestDisplayFollowing::nothingNewDrawsNothing()
{
    Shown shown;
    shown.add(1, 3);
    int changes = 0;
    connect(shown.pane.document(), &QTextDocument::contentsChanged, this, [&] { ++changes; });
    shown.pane.showText(shown.text);
    QCOMPARE(changes, 0);
}

// Texts with line breaks of their own, cut anywhere, in bursts of any length.
void TestDisplayFollowing::itShowsTheTextWhateverComes()
{
    Shown shown;
    QRandomGenerator random(7);
    const QStringList pieces{QStringLiteral("\r"),          QStringLiteral("\n"),
                             QStringLiteral("\r\n"),        QStringLiteral("text"),
                             QString(QChar(0x2029)),        QString(QChar(0)),
                             QString(300, QLatin1Char('x'))};
    for (int round = 0; round < 400; ++round) {
        for (quint32 burst = random.bounded(40U); burst > 0; --burst) {
            QString line;
            for (quint32 i = random.bounded(6U); i > 0; --i)
                line += pieces.at(random.bounded(static_cast<int>(pieces.size())));
            if (random.bounded(5U) == 0)
                shown.text.addLineBreak();
            else
                shown.text.addLine(line);
        }
        if (random.bounded(50U) == 0)
            shown.text.clear();
        shown.pane.showText(shown.text);
        QPlainTextEdit afresh;
        afresh.setPlainText(shown.text.text());
        QCOMPARE(shown.pane.toPlainText(), afresh.toPlainText());
    }
}

// As one paragraph it would take too long to lay out. The text itself stays whole.
void TestDisplayFollowing::aLineWithoutEndIsFolded()
{
    Shown shown;
    QString endless;
    for (int i = 0; i < 20000; ++i)
        endless += QChar('a' + i % 26);
    shown.add(1, 3);
    const auto expectWhole = [&] {
        QString joined;
        for (auto block = shown.pane.document()->begin(); block.isValid(); block = block.next()) {
            QVERIFY(block.length() <= 4001);
            joined += block.text();
        }
        QString whole = shown.text.text();
        QCOMPARE(joined, whole.remove(QStringLiteral("\r\n")));
    };
    shown.text.addLine(endless); // cut to its last 16,000 characters and all new
    shown.pane.showText(shown.text);
    expectWhole();
    QVERIFY(shown.pane.document()->blockCount() > 4);
    for (int i = 4; i < 60; ++i) {
        shown.add(i, i);
        expectWhole();
    }
    shown.text.addLine(endless.left(7000)); // added to what is there
    shown.pane.showText(shown.text);
    for (int i = 60; i < 500; ++i) {
        shown.add(i, i);
        expectWhole();
    }
}

void TestDisplayFollowing::theEndIsFollowed()
{
    Shown shown;
    for (int i = 1; i <= 50; ++i) {
        shown.add(i, i);
        QVERIFY(shown.pane.textCursor().atEnd());
        QVERIFY(shown.isCaretInView());
        QVERIFY(shown.pane.standsAtEnd());
    }
}

void TestDisplayFollowing::whoScrolledBackStaysThere()
{
    Shown shown;
    shown.add(1, 100);
    shown.pane.verticalScrollBar()->setValue(20);
    QCOMPARE(shown.topLine(), lineText(21));
    shown.add(101, 200);
    QCOMPARE(shown.topLine(), lineText(21));
    QCOMPARE(shown.pane.verticalScrollBar()->value(), 20);
}

void TestDisplayFollowing::whoScrollsToTheEndFollowsAgain()
{
    Shown shown;
    shown.add(1, 100);
    shown.pane.verticalScrollBar()->setValue(20);
    shown.add(101, 110);
    shown.pane.verticalScrollBar()->setValue(shown.pane.verticalScrollBar()->maximum());
    shown.add(111, 120);
    QVERIFY(shown.isCaretInView());
    QVERIFY(shown.pane.textCursor().atEnd());
}

void TestDisplayFollowing::theLineInViewStaysWhileTheBeginningIsCut()
{
    Shown shown;
    shown.add(1, 700);
    shown.pane.verticalScrollBar()->setValue(400);
    QCOMPARE(shown.topLine(), lineText(401));
    int next = 701;
    while (shown.text.begin() == 0)
        shown.text.addLine(lineText(next++));
    shown.pane.showText(shown.text);
    QVERIFY(!shown.pane.toPlainText().contains(QStringLiteral("line 100\n")));
    QCOMPARE(shown.topLine(), lineText(401));
    // Until it is cut away itself: then the oldest that is left.
    while (shown.text.text().contains(lineText(401)))
        shown.text.addLine(lineText(next++));
    shown.pane.showText(shown.text);
    QCOMPARE(shown.pane.verticalScrollBar()->value(), 0);
}

void TestDisplayFollowing::aSelectionStays()
{
    Shown shown;
    shown.add(1, 700);
    shown.select(lineText(500));
    while (shown.text.begin() == 0)
        shown.text.addLine(QStringLiteral("more"));
    shown.pane.showText(shown.text);
    QCOMPARE(shown.pane.textCursor().selectedText(), lineText(500));
    QVERIFY(shown.isCaretInView());
}

void TestDisplayFollowing::aSelectionAtTheEndDoesNotGrow()
{
    Shown shown;
    shown.add(1, 3);
    shown.pane.selectAll();
    const QString selected = shown.pane.textCursor().selectedText();
    shown.add(4, 6);
    QCOMPARE(shown.pane.textCursor().selectedText(), selected);
}

void TestDisplayFollowing::aSelectionStaysWhileTheEndIsFollowed()
{
    Shown shown;
    shown.add(1, 100);
    shown.select(lineText(97));
    shown.pane.verticalScrollBar()->setValue(shown.pane.verticalScrollBar()->maximum());
    shown.add(101, 150);
    QVERIFY(shown.pane.standsAtEnd());
    QCOMPARE(shown.pane.textCursor().selectedText(), lineText(97));
}

void TestDisplayFollowing::clearingEmptiesIt()
{
    Shown shown;
    shown.add(1, 100);
    shown.text.clear();
    shown.pane.showText(shown.text);
    QCOMPARE(shown.pane.toPlainText(), QString());
    shown.add(1, 2);
    QCOMPARE(shown.pane.toPlainText(), QStringLiteral("line 1\nline 2\n"));
}

KELDOX_TEST(TestDisplayFollowing)
#include "TestDisplayFollowing.moc"
