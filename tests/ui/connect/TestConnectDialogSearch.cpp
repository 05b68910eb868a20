// What OK in the connect-to-port dialog does: the search on the one port, and how it ends.
#include "ConnectDialogBench.h"
#include "support/TestMain.h"

class TestConnectDialogSearch : public QObject
{
    Q_OBJECT

private slots:
    void okConnectsOnThatPortAlone();
    void aTypedNumberIsSearchedToo();
    void aTypedWordIsReported();
    void tovinRIsAskedAtEightAddressesOfThatPort();
    void theTextGoesToTheSearchWithItsBlank();
    void okUnloadsThoughTheConnectionFails();
    void escapeBreaksTheSearchOff();
    void theControlsAreDisabledWhileItConnects();
    void pollingIsStoppedAndNotStartedAgain();
    void anErrorWhileConnectingIsReportedAndTheDialogCloses();
    void aLoopbackAdaptorIsStillNamedAfterwards();
};

void TestConnectDialogSearch::okConnectsOnThatPortAlone()
{
    SearchBench bench;
    for (const int port : {1, 2, 3, 4})
        bench.unit(port);
    frmConnectToComport dialog;
    open(dialog, [&] {
        dialog.comboComPort().setCurrentIndex(1);
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(2), QStringList{QStringLiteral("*ID?")});
    for (const int port : {1, 3, 4})
        QCOMPARE(bench.sentTo(port), QStringList());
    QCOMPARE(app().foundUnits, std::int16_t{1});
    QCOMPARE(app().devices[1]->commPort()->PortNumber(), std::int16_t{2});
    QVERIFY(bench.mainWindow->panels[1] != QStringLiteral("NOT CONNECTED"));
    verifyAtRest(bench);
}

void TestConnectDialogSearch::aTypedNumberIsSearchedToo()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(9); // the highest is not in the list
    frmConnectToComport dialog;
    open(dialog, [&] {
        QTest::keyClicks(&dialog.comboComPort(), QStringLiteral("9"));
        QTest::keyClick(&dialog.comboComPort(), Qt::Key_Return);
    });
    QCOMPARE(bench.sentTo(9), QStringList{QStringLiteral("*ID?")});
    QCOMPARE(bench.sentTo(1), QStringList());
    QCOMPARE(dialog.comboComPort().count(), 1); // nothing was added
}

void TestConnectDialogSearch::aTypedWordIsReported()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    bench.fixture.boxes.expectStart(QStringLiteral("Error 13 ("));
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    open(dialog, [&] {
        dialog.comboComPort().setEditText(QStringLiteral("COM1"));
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(1), QStringList());
    verifyAtRest(bench);
}

void TestConnectDialogSearch::tovinRIsAskedAtEightAddressesOfThatPort()
{
    SearchBench bench;
    bench.line(4).addUnit(std::make_shared<sim::SimulatedUnit>(addressedUnit(3)));
    bench.unit(5);
    bench.waitOnly(200);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().currentText(), QStringLiteral(" 4"));
        tovinR(dialog).click();
        press(dialog, "OKButton");
    });
    QStringList addressed;
    for (int address = 1; address <= 8; ++address)
        addressed.append(QStringLiteral(">LISTEN0%1").arg(address));
    QCOMPARE(bench.sentTo(4).filter(QStringLiteral(">LISTEN")), addressed);
    QCOMPARE(bench.sentTo(5), QStringList());
    QCOMPARE(app().foundUnits, std::int16_t{1});
    QCOMPARE(bench.channels->progressValues.mid(0, 8), QList<int>(8, 9));
}

// " 4" is a number with its blank; what is typed around it may stand too.
void TestConnectDialogSearch::theTextGoesToTheSearchWithItsBlank()
{
    SearchBench bench;
    bench.unit(4);
    bench.unit(5);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().currentText(), QStringLiteral(" 4"));
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(4), QStringList{QStringLiteral("*ID?")});
}

void TestConnectDialogSearch::okUnloadsThoughTheConnectionFails()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    bench.rows[1]->onClick = [](FakeChannelRow &) { throw RunTimeError(91); };
    bench.fixture.boxes.acceptAll();
    frmConnectToComport dialog;
    open(dialog, [&] { press(dialog, "OKButton"); });
    QVERIFY(!bench.fixture.boxes.shown().isEmpty());
    verifyAtRest(bench);
}

void TestConnectDialogSearch::escapeBreaksTheSearchOff()
{
    SearchBench bench;
    bench.silence(1);
    bench.line(2);
    frmConnectToComport dialog;
    QElapsedTimer clock;
    open(dialog, [&] {
        QTimer::singleShot(100, &dialog, [&] {
            QVERIFY(app().search);
            QTest::keyClick(&dialog, Qt::Key_Escape);
            QVERIFY(dialog.isVisible()); // until the search has ended
        });
        clock.start();
        press(dialog, "OKButton");
    });
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(bench.mainWindow->panels[1], QStringLiteral("NOT CONNECTED"));
    verifyAtRest(bench);
}

void TestConnectDialogSearch::theControlsAreDisabledWhileItConnects()
{
    SearchBench bench;
    bench.silence(1);
    bench.line(2);
    bench.waitOnly(200);
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    bool looked = false;
    open(dialog, [&] {
        QTimer::singleShot(50, &dialog, [&] {
            looked = true;
            QVERIFY(!dialog.comboComPort().isEnabled());
            QVERIFY(!tovinR(dialog).isEnabled());
            QVERIFY(!button(dialog, "OKButton").isEnabled());
            QVERIFY(button(dialog, "CancelButton").isEnabled());
        });
        press(dialog, "OKButton");
    });
    QVERIFY(looked);
}

void TestConnectDialogSearch::pollingIsStoppedAndNotStartedAgain()
{
    SearchBench bench;
    bench.unit(1);
    bench.line(2);
    frmConnectToComport dialog;
    int before = 0;
    open(dialog, [&] {
        before = bench.mainWindow->pollingStops;
        press(dialog, "OKButton");
    });
    QVERIFY(bench.mainWindow->pollingStops > before);
    QVERIFY(!bench.calls->contains(QStringLiteral("main.restartPolling")));
}

// A main window whose polling cannot be stopped.
class StubbornMainWindow : public FakeMainWindow
{
public:
    using FakeMainWindow::FakeMainWindow;

    void stopPolling() override { throw RunTimeError(ErrorNumber::InvalidProcedureCall); }
};

void TestConnectDialogSearch::anErrorWhileConnectingIsReportedAndTheDialogCloses()
{
    SearchBench bench;
    bench.unit(1);
    bench.line(2);
    app().mainWindow = std::make_shared<StubbornMainWindow>(bench.calls);
    bench.fixture.boxes.expectStart(QStringLiteral("Error 5 ("));
    frmConnectToComport dialog;
    open(dialog, [&] { press(dialog, "OKButton"); });
    const QString told = bench.fixture.boxes.shown().last().text;
    QVERIFY(told.contains(QStringLiteral(" in frmConnectToKnownComport\r\n")));
    QVERIFY(told.endsWith(QStringLiteral("Connect")));
    QCOMPARE(bench.sentTo(1), QStringList());
    verifyAtRest(bench);
}

void TestConnectDialogSearch::aLoopbackAdaptorIsStillNamedAfterwards()
{
    SearchBench bench;
    bench.line(1).setResponder([](const std::string &command) { return command; });
    bench.line(2);
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    open(dialog, [&] { press(dialog, "OKButton"); });
    QCOMPARE(bench.mainWindow->panels[1], QStringLiteral("FOUND A LOOPBACK ADAPTOR ON COM1"));
}

KELDOX_TEST(TestConnectDialogSearch)
#include "TestConnectDialogSearch.moc"
