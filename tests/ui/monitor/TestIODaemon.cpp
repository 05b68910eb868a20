// The IO monitor's window and its display.
#include "MonitorBench.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QPushButton>

class TestIODaemon : public QObject
{
    Q_OBJECT

private slots:
    void caption();
    void aLineForEachEvent();
    void sourcesOnRequest();
    void aBareLineBreakIsAppendedAsItIs();
    void cutBeyond8000Characters_data();
    void cutBeyond8000Characters();
    void aBareLineBreakIsNotCutBehind();
    void bareLineBreaksAloneDoNotGrowForEver();
    void entriesOfANeverShownMonitorDoNoHarm();
    void itsFirstSizeFollowsTheFontOfItsLines();
    void theNewestLineIsInView();
    void paintedAtOnceWhenShown();
    void paintedWhileVisible();
    void notPaintedWhileHidden();
    void tenThousandEventsASecond();
    void clearDisplay();
    void closingHides();
    void everyControlHasAnAccessibleName();
    void layout();
};

void TestIODaemon::caption()
{
    const Fixture fixture;
    frmIODaemon window;
    window.load();
    QVERIFY(window.windowTitle().startsWith(QStringLiteral("IO monitor - ")));
    QVERIFY(!window.isVisible());
}

void TestIODaemon::aLineForEachEvent()
{
    const Fixture fixture;
    frmIODaemon window;
    window.Display(QStringLiteral("clsKeldoX"), QStringLiteral(" sending *ID? to com port 3"));
    window.Display(QStringLiteral("x"), QString());
    QCOMPARE(window.displayText(), QStringLiteral(" sending *ID? to com port 3\r\n\r\n"));
}

void TestIODaemon::sourcesOnRequest()
{
    const Fixture fixture;
    frmIODaemon window;
    entry(window, "mnuDebugDisplaySource")->trigger();
    window.Display(QStringLiteral("clsCommPort"), QStringLiteral("text"));
    QCOMPARE(window.displayText(), QStringLiteral("clsCommPort: text\r\n"));
    entry(window, "mnuDebugDisplaySource")->trigger();
    window.Display(QStringLiteral("clsCommPort"), QStringLiteral("more"));
    QCOMPARE(window.displayText(), QStringLiteral("clsCommPort: text\r\nmore\r\n"));
}

void TestIODaemon::aBareLineBreakIsAppendedAsItIs()
{
    const Fixture fixture;
    frmIODaemon window;
    entry(window, "mnuDebugDisplaySource")->trigger();
    window.Display(QStringLiteral("clsCommPort"), QStringLiteral("\r\n"));
    QCOMPARE(window.displayText(), QStringLiteral("\r\n"));
}

void TestIODaemon::cutBeyond8000Characters_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("kept");
    QTest::newRow("8000") << 8000 << 8000;
    QTest::newRow("8001") << 8001 << 6401;
    QTest::newRow("8002") << 8002 << 6402;    // 6401.6
    QTest::newRow("8003") << 8003 << 6402;    // 6402.4
    QTest::newRow("8005") << 8005 << 6404;    // 6404.0
    QTest::newRow("20000") << 20000 << 16000; // by proportion, not to a size
}

void TestIODaemon::cutBeyond8000Characters()
{
    QFETCH(int, length);
    QFETCH(int, kept);
    const Fixture fixture;
    frmIODaemon window;
    QString line;
    for (int i = 0; i < length - 2; ++i)
        line += QChar('a' + i % 26);
    window.Display(QString(), line);
    QCOMPARE(window.displayText().size(), kept);
    QCOMPARE(window.displayText(), (line + QStringLiteral("\r\n")).right(kept));
}

void TestIODaemon::aBareLineBreakIsNotCutBehind()
{
    const Fixture fixture;
    frmIODaemon window;
    window.Display(QString(), QString(7998, QLatin1Char('a')));
    window.Display(QString(), QStringLiteral("\r\n"));
    QCOMPARE(window.displayText().size(), 8002);
    window.Display(QString(), QString());
    QCOMPARE(window.displayText().size(), 6403); // 0.8 x 8004
}

void TestIODaemon::bareLineBreaksAloneDoNotGrowForEver()
{
    const Fixture fixture;
    frmIODaemon window;
    for (int i = 0; i < 100000; ++i)
        window.Display(QString(), QStringLiteral("\r\n"));
    QVERIFY(window.displayText().size() <= 2 * frmIODaemon::displayLimit);
}

void TestIODaemon::itsFirstSizeFollowsTheFontOfItsLines()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    const QFont font = text1(window)->font();
    QVERIFY(QFontInfo(font).fixedPitch());
    QVERIFY(font.pointSizeF() >= QApplication::font().pointSizeF());
    const QSize wanted(QFontMetrics(font).averageCharWidth() * 100,
                       QFontMetrics(font).lineSpacing() * 28);
    QCOMPARE(window.size(), withinScreen(window, wanted));
    window.hide();
    window.resize(500, 300);
    window.show(); // and only the first
    QCOMPARE(window.size(), QSize(500, 300));
}

void TestIODaemon::theNewestLineIsInView()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    for (int i = 0; i < 200; ++i)
        window.Display(QString(), QStringLiteral("line %1").arg(i));
    QTRY_VERIFY(text1(window)->toPlainText().endsWith(QStringLiteral("line 199\n")));
    QVERIFY(text1(window)->textCursor().atEnd());
    QVERIFY(text1(window)->viewport()->rect().contains(text1(window)->cursorRect().center()));
}

void TestIODaemon::paintedAtOnceWhenShown()
{
    const Machine machine;
    frmIODaemon window;
    window.Display(QString(), QStringLiteral("before"));
    window.show();
    QCOMPARE(text1(window)->toPlainText(), QStringLiteral("before\n"));
    window.hide();
    window.Display(QString(), QStringLiteral("meanwhile"));
    QTest::qWait(50);
    QCOMPARE(text1(window)->toPlainText(), QStringLiteral("before\n"));
    window.show();
    QCOMPARE(text1(window)->toPlainText(), QStringLiteral("before\nmeanwhile\n"));
}

void TestIODaemon::paintedWhileVisible()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    window.Display(QString(), QStringLiteral("one"));
    window.Display(QString(), QStringLiteral("two"));
    QCOMPARE(text1(window)->toPlainText(), QString()); // a little later, both together
    QTRY_COMPARE(text1(window)->toPlainText(), QStringLiteral("one\ntwo\n"));
}

void TestIODaemon::notPaintedWhileHidden()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    window.close();
    int paints = 0;
    connect(text1(window), &QPlainTextEdit::textChanged, this, [&] { ++paints; });
    for (int i = 0; i < 100; ++i)
        window.Display(QString(), QStringLiteral("x"));
    QTest::qWait(100);
    QCOMPARE(paints, 0);
}

void TestIODaemon::tenThousandEventsASecond()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    int paints = 0;
    connect(text1(window), &QPlainTextEdit::textChanged, this, [&] { ++paints; });
    qint64 inDisplay = 0;
    QElapsedTimer second;
    second.start();
    // 100 events every 10 ms, with the window alive in between.
    for (int burst = 0; burst < 100; ++burst) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 100; ++i)
            window.Display(QStringLiteral("clsKeldoX"),
                           QStringLiteral(" received %1 MHz").arg(burst * 100 + i));
        inDisplay += timer.nsecsElapsed();
        while (second.elapsed() < 10 * (burst + 1))
            QCoreApplication::processEvents();
    }
    QVERIFY(window.displayText().size() <= frmIODaemon::displayLimit);
    // A few times a second: nobody reads faster.
    QVERIFY2(paints >= 2 && paints <= 8, qPrintable(QString::number(paints)));
    // Generous for a loaded machine; undisturbed it is a fraction of a microsecond an event.
    QVERIFY2(inDisplay < 200'000'000, qPrintable(QString::number(inDisplay)));
    QVERIFY2(second.elapsed() < 3000, qPrintable(QString::number(second.elapsed())));
}

void TestIODaemon::clearDisplay()
{
    const Machine machine;
    frmIODaemon window;
    window.Display(QString(), QStringLiteral("text"));
    window.show();
    QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("cmdClear")), Qt::LeftButton);
    QCOMPARE(window.displayText(), QString());
    QCOMPARE(text1(window)->toPlainText(), QString());
}

void TestIODaemon::closingHides()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    window.Display(QString(), QStringLiteral("kept"));
    window.close();
    QVERIFY(!window.isVisible());
    window.show();
    QCOMPARE(text1(window)->toPlainText(), QStringLiteral("kept\n"));
}

void TestIODaemon::everyControlHasAnAccessibleName()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    for (const char *name : {"Text1", "comboComPort", "cmdConnect", "comboCommand", "chkCR",
                             "cmdSendCommand", "cmdClear"}) {
        const auto *control = window.findChild<QWidget *>(QLatin1String(name));
        const auto *button = qobject_cast<const QAbstractButton *>(control);
        QVERIFY2(!control->accessibleName().isEmpty() || (button && !button->text().isEmpty()),
                 name);
    }
}

// With KELDOX_PICTURES set to a folder it leaves a picture there.
void TestIODaemon::layout()
{
    const Machine machine;
    frmIODaemon window;
    window.load();
    entry(window, "mnuDebugDisplaySource")->trigger();
    for (int i = 0; i < 12; ++i) {
        window.Display(QStringLiteral("11/21/25 4:32 AM clsKeldoX"),
                       QStringLiteral(" sending *STEP %1 to com port 3").arg(1000 + i));
        window.Display(QStringLiteral("11/21/25 4:32 AM clsKeldoX"),
                       QStringLiteral(" received LOCKED"));
    }
    window.show();
    const int before = text1(window)->height();
    if (const QString folder = qEnvironmentVariable("KELDOX_PICTURES"); !folder.isEmpty())
        QVERIFY(window.grab().save(folder + QStringLiteral("/io-monitor.png")));
    // The display takes what the window grows by.
    window.resize(window.width(), window.height() + 100);
    QTRY_COMPARE(text1(window)->height(), before + 100);
}

// Its controls are made with its first show; its menus are there before.
void TestIODaemon::entriesOfANeverShownMonitorDoNoHarm()
{
    const Machine machine;
    frmIODaemon window;
    window.load();
    window.Display(QString(), QStringLiteral("early"));
    entry(window, "mnuCommandSend")->trigger(); // on a closed port: nothing is sent or said
    QCOMPARE(window.displayText(), QStringLiteral("early\r\n"));
    entry(window, "mnuCommandClear")->trigger();
    QCOMPARE(window.displayText(), QString());
    window.show();
    QCOMPARE(text1(window)->toPlainText(), QString());
    QVERIFY(text1(window)->isVisible());
}

KELDOX_TEST(TestIODaemon)
#include "TestIODaemon.moc"
