// The main window's menu entries that open dialogs: polling interval, known port, information.
#include "MainBench.h"

#include "support/Failures.h"
#include "support/Hand.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmOperation.h"

#include <QComboBox>

static void enterInterval(MainBench &bench, const QString &text)
{
    const Hand hand([&](QWidget *box) {
        auto *entry = box->findChild<QLineEdit *>(QStringLiteral("Text1"));
        QCOMPARE(entry->text(), QStringLiteral("1000"));
        QCOMPARE(box->findChild<QLabel *>(QStringLiteral("Label1"))->text(),
                 QStringLiteral("Enter an interval (in milliseconds)"));
        QVERIFY(!app().guard().isUp());
        entry->selectAll();
        QTest::keyClicks(entry, text);
        QTest::keyClick(entry, Qt::Key_Return);
    });
    bench.entry("mnuPollingInterval")->trigger();
    QVERIFY(hand.acted);
}

class TestDialogEntries : public QObject
{
    Q_OBJECT

private slots:
    void intervals_data();
    void intervals();
    void anIntervalThatOverflowsIsReportedAndChangesNothing();
    void cancellingTheIntervalChangesNothing_data();
    void cancellingTheIntervalChangesNothing();
    void intervalDoesNothingWhileTheGuardIsDown();
    void zeroStopsTheTicking();
    void knownPortEntryFollowsGuardAndSearch();
    void knownPortLowersTheGuardAndRestartsPolling();
    void knownPortReportsAFailureAndGoesOn();
    void closingTheMainWindowUnderTheDialogEndsTheProgram();
    void operationIsShownOnceModeless();
    void aboutIsModal();
    void contactIsShownModeless();
};

void TestDialogEntries::intervals_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("interval");
    QTest::newRow("a number") << "250" << 250;
    QTest::newRow("halves to even") << "250.5" << 250;
    QTest::newRow("no number") << "soon" << 1000;
    QTest::newRow("the largest") << "32767" << 32767;
    QTest::newRow("negative") << "-5" << 700; // as it was
}

void TestDialogEntries::intervals()
{
    QFETCH(QString, typed);
    QFETCH(int, interval);
    MainBench bench;
    bench.show();
    QCOMPARE(bench.polling()->interval(), 1000);
    bench.polling()->setInterval(700);
    enterInterval(bench, typed);
    QCOMPARE(bench.polling()->interval(), interval);
    QVERIFY(app().guard().isUp());
}

void TestDialogEntries::anIntervalThatOverflowsIsReportedAndChangesNothing()
{
    MainBench bench;
    bench.show();
    bench.boxes().expectStart(QStringLiteral("Error 6 ('Overflow')"));
    enterInterval(bench, QStringLiteral("32768"));
    QVERIFY(bench.boxes().shown().last().text.contains(
        QStringLiteral(" in frmMain_KeldoX2.mnuPollingInterval_Click")));
    QCOMPARE(bench.polling()->interval(), 1000);
    QVERIFY(app().guard().isUp());
    QVERIFY(!QApplication::activeModalWidget());
}

void TestDialogEntries::cancellingTheIntervalChangesNothing_data()
{
    using Cancel = void (*)(QWidget *);
    QTest::addColumn<Cancel>("cancel");
    QTest::newRow("Escape") << Cancel([](QWidget *box) { QTest::keyClick(box, Qt::Key_Escape); });
    QTest::newRow("Cancel") << Cancel([](QWidget *box) {
        box->findChild<QPushButton *>(QStringLiteral("CancelButton"))->click();
    });
    QTest::newRow("frame") << Cancel([](QWidget *box) { box->close(); });
}

void TestDialogEntries::cancellingTheIntervalChangesNothing()
{
    using Cancel = void (*)(QWidget *);
    QFETCH(const Cancel, cancel);
    MainBench bench;
    bench.show();
    bench.polling()->setInterval(700);
    const Hand hand([&](QWidget *box) {
        QTest::keyClicks(box->findChild<QLineEdit *>(QStringLiteral("Text1")), QStringLiteral("5"));
        cancel(box);
    });
    bench.entry("mnuPollingInterval")->trigger();
    QVERIFY(hand.acted);
    QCOMPARE(bench.polling()->interval(), 700);
}

void TestDialogEntries::intervalDoesNothingWhileTheGuardIsDown()
{
    MainBench bench;
    bench.show();
    app().guard().set(false);
    const Hand hand([](QWidget *box) { box->close(); });
    bench.entry("mnuPollingInterval")->trigger();
    QVERIFY(!hand.acted);
}

void TestDialogEntries::zeroStopsTheTicking()
{
    MainBench bench;
    bench.show();
    bench.entry("mnuEnablePolling")->trigger();
    enterInterval(bench, QStringLiteral("0"));
    QCOMPARE(bench.polling()->interval(), 0);
    QSignalSpy ticks(bench.polling(), &TimerControl::Timer);
    QVERIFY(!ticks.wait(50));
    QVERIFY(bench.polling()->isEnabled());
}

void TestDialogEntries::knownPortEntryFollowsGuardAndSearch()
{
    MainBench bench;
    const QAction *entry = bench.entry("mnuConnectKnownComport");
    QVERIFY(!entry->isEnabled());
    bench.show();
    QVERIFY(entry->isEnabled());
    app().guard().set(false);
    QVERIFY(!entry->isEnabled());
}

void TestDialogEntries::knownPortLowersTheGuardAndRestartsPolling()
{
    MainBench bench;
    const sim::SimulatedLine line;
    const sim::SimulatedLine last; // the one that the list leaves out
    bench.fixture.plug(4, line.device());
    bench.fixture.plug(9, last.device());
    bench.show();
    bench.entry("mnuEnablePolling")->trigger();
    bool guardInside = true;
    bool pollingInside = true;
    // A hand that waited in the middle of the listing would hold the listing up.
    const auto listed = [](QWidget *box) {
        return box->findChild<QComboBox *>(QStringLiteral("comboComPort"))->isEnabled();
    };
    const auto cancel = [&](QWidget *box) {
        guardInside = app().guard().isUp();
        pollingInside = bench.polling()->isEnabled();
        QVERIFY(!app().searchFinished);
        QTest::mouseClick(box->findChild<QPushButton *>(QStringLiteral("CancelButton")),
                          Qt::LeftButton);
    };
    const Hand hand(cancel, listed);
    bench.entry("mnuConnectKnownComport")->trigger();
    QVERIFY(hand.acted);
    QVERIFY(!guardInside);
    QVERIFY(!pollingInside);
    QVERIFY(app().guard().isUp());
    QVERIFY(app().searchFinished);
    QVERIFY(bench.polling()->isEnabled());
    QCOMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QVERIFY(bench.entry("mnuConnectKnownComport")->isEnabled());
}

void TestDialogEntries::knownPortReportsAFailureAndGoesOn()
{
    class FailingWindow : public frmMain_KeldoX2
    {
    public:
        void stopPolling() override
        {
            if (std::exchange(fails, false))
                fail();
            frmMain_KeldoX2::stopPolling();
        }
        bool fails = false;
    };
    MainBench bench;
    const auto window = std::make_shared<FailingWindow>();
    app().mainWindow = bench.window = window;
    window->load();
    const sim::SimulatedLine line;
    const sim::SimulatedLine last;
    bench.fixture.plug(4, line.device());
    bench.fixture.plug(9, last.device());
    bench.show();
    window->fails = true;
    bench.boxes().expect(failureIn("frmMain.mnuConnectKnownComport_Click"),
                         MessageBox::Exclamation);
    const Hand hand([](QWidget *box) { box->close(); });
    bench.entry("mnuConnectKnownComport")->trigger();
    QVERIFY(hand.acted); // the dialog was opened all the same
    QVERIFY(bench.boxes().allShown());
    QVERIFY(app().guard().isUp());
}

void TestDialogEntries::closingTheMainWindowUnderTheDialogEndsTheProgram()
{
    MainBench bench;
    const sim::SimulatedLine line;
    bench.fixture.plug(4, line.device());
    bench.show();
    QElapsedTimer sinceClose;
    const Hand hand([&](QWidget *) {
        sinceClose.start();
        bench.window->close();
    });
    bench.entry("mnuConnectKnownComport")->trigger();
    QVERIFY(hand.acted);
    QVERIFY(EventQueue::ending());
    QVERIFY(sinceClose.elapsed() < 200);
}

void TestDialogEntries::operationIsShownOnceModeless()
{
    MainBench bench;
    bench.show();
    bench.entry("mnuHelpContents")->trigger();
    bench.entry("mnuHelpContents")->trigger();
    const auto windows = bench.window->findChildren<frmOperation *>();
    QCOMPARE(windows.size(), 1);
    QVERIFY(windows.first()->isVisible());
    QVERIFY(!windows.first()->isModal());
    QTest::mouseClick(windows.first()->findChild<QPushButton *>(QStringLiteral("cmdClose")),
                      Qt::LeftButton);
    QTRY_COMPARE(bench.window->findChildren<frmOperation *>().size(), 0);
}

void TestDialogEntries::aboutIsModal()
{
    MainBench bench;
    bench.show();
    const Hand hand([&](QWidget *box) {
        QVERIFY(qobject_cast<frmAbout *>(box));
        QCOMPARE(box->parentWidget(), bench.window.get());
        QTest::mouseClick(box->findChild<QPushButton *>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    bench.entry("mnuHelpAbout")->trigger();
    QVERIFY(hand.acted);
}

void TestDialogEntries::contactIsShownModeless()
{
    MainBench bench;
    bench.show();
    bench.entry("mnuHelpContact")->trigger();
    const auto windows = bench.window->findChildren<frmContact *>();
    QCOMPARE(windows.size(), 1);
    QVERIFY(!windows.first()->isModal());
    QTest::mouseClick(windows.first()->findChild<QPushButton *>(QStringLiteral("OKButton")),
                      Qt::LeftButton);
    QTRY_COMPARE(bench.window->findChildren<frmContact *>().size(), 0);
}

KELDOX_TEST(TestDialogEntries)
#include "TestDialogEntries.moc"
