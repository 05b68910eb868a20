// The order of a whole search: what the windows, the rows, the line and the log see of it.
#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "support/Failures.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

static const char searching[] = "SEARCHING PORTS, THIS MAY TAKE SOME TIME....";
class TestSearchPorts : public QObject
{
    Q_OBJECT

private slots:
    void preparingTellsTheWindowsInOrder();
    void preparingResetsCountAndFlagAndSetsUpTheProgressBar();
    void preparingLetsGoOfTheUnitsOfTheSearchBefore();
    void aFailureInPreparingIsReportedAndTheRestPrepared();
    void aSearchOfOnePortRunsInItsOrder();
    void theWholeLogOfAFoundUnit();
    void aFoundUnitIsBoundWithItsSettings();
    void theUnitsOwnPortIsClosedAfterItWasBound();
    void theSeekerIsGoneAndItsPortClosedAtTheEnd();
    void twoUnitsFillTheirSlotsInPortOrder();
    void panelFourShowsAPortThatIsOpen();
};

static QStringList preparing()
{
    QStringList calls{QStringLiteral("channels.prepareForSearch"),
                      QStringLiteral("main.panel1 ") + searching};
    for (int row = 1; row <= 8; ++row)
        calls.append(QStringLiteral("row%1.InitChannel").arg(row));
    calls << QStringLiteral("main.resetForSearch") << QStringLiteral("monitor.closeComPort");
    // Rows and windows let go of the units of the search before.
    for (int row = 1; row <= 8; ++row)
        calls << QStringLiteral("row%1.setDevice none").arg(row)
              << QStringLiteral("row%1.setExists False").arg(row);
    calls << QStringLiteral("main.setDevice") << QStringLiteral("channels.setDevice");
    return calls;
}

static QStringList binding(int slot, int port)
{
    const QString row = QStringLiteral("row%1.").arg(slot);
    const QString name = QStringLiteral("COM%1:").arg(port);
    return {QStringLiteral("main.panel1 FOUND AN KELDO-X ON COM%1").arg(port),
            row + QStringLiteral("setDevice unit"),
            row + QStringLiteral("setIndex %1").arg(slot),
            row + QStringLiteral("setChannelNumber %1").arg(slot),
            row + QStringLiteral("setComPortNumber %1").arg(port),
            row +
                QStringLiteral("showPort <%1> <select the device on %2> <%2>").arg(slot).arg(name),
            row + QStringLiteral("setStatus 1"),
            row + QStringLiteral("optPortNumClick"),
            row + QStringLiteral("ShowControls"),
            row + QStringLiteral("setExists True")};
}

void TestSearchPorts::preparingTellsTheWindowsInOrder()
{
    SearchBench bench;
    InitializeStuff();
    QCOMPARE(*bench.calls, preparing());
}

void TestSearchPorts::preparingResetsCountAndFlagAndSetsUpTheProgressBar()
{
    SearchBench bench;
    app().foundUnits = 3;
    app().searchFinished = true;
    InitializeStuff();
    QCOMPARE(app().foundUnits, std::int16_t(0));
    QVERIFY(!app().searchFinished);
    QCOMPARE(bench.channels->maximumValue, 516);
    QVERIFY(bench.channels->progressVisible);
}

void TestSearchPorts::preparingLetsGoOfTheUnitsOfTheSearchBefore()
{
    SearchBench bench;
    const std::weak_ptr<clsKeldoX> unit = bench.bind(2, 5);
    app().currentDevice = unit.lock();
    InitializeStuff();
    QVERIFY(!app().currentDevice);
    QVERIFY(unit.expired());
    // The windows have one that is nobody's: each its question is answered without a port.
    QVERIFY(bench.mainWindow->device());
    QCOMPARE(bench.mainWindow->device(), bench.channels->mDevice);
    QVERIFY(!bench.mainWindow->device()->PortIsOpen());
}

void TestSearchPorts::aFailureInPreparingIsReportedAndTheRestPrepared()
{
    class FailingWindow : public FakeMainWindow
    {
    public:
        void resetForSearch() override { fail(); }
    };
    SearchBench bench;
    app().foundUnits = 3;
    app().mainWindow = std::make_shared<FailingWindow>();
    bench.fixture.boxes.expect(failureIn("SearchPorts.InitializeStuff"), MessageBox::Exclamation);
    InitializeStuff();
    QVERIFY(bench.fixture.boxes.allShown());
    QVERIFY(bench.calls->contains(QStringLiteral("monitor.closeComPort")));
    QCOMPARE(app().foundUnits, std::int16_t(0));
    QVERIFY(bench.channels->progressVisible);
}

void TestSearchPorts::aSearchOfOnePortRunsInItsOrder()
{
    SearchBench bench;
    bench.unit(5);
    SearchPorts(3, QStringLiteral(" 5"));

    QStringList expected = preparing();
    expected << QStringLiteral("channels.show") << QStringLiteral("main.panel1 ") + searching
             << QStringLiteral("channels.panel4 <>") << binding(1, 5)
             << QStringLiteral("channels.panel4 <     >");
    QStringList calls = *bench.calls;
    QCOMPARE(calls.mid(0, expected.size()), expected);
    calls = calls.mid(expected.size());
    QVERIFY(calls.takeFirst().startsWith(QLatin1String("channels.panel4 ")));
    QCOMPARE(calls,
             (QStringList{QStringLiteral("channels.arrange"), QStringLiteral("row1.setStatus 1"),
                          QStringLiteral("row1.optPortNumClick"),
                          QStringLiteral("main.bringUpToDate")}));
    QVERIFY(app().searchFinished);
    QCOMPARE(app().foundUnits, std::int16_t(1));
}

void TestSearchPorts::theWholeLogOfAFoundUnit()
{
    SearchBench bench;
    bench.unit(5);
    SearchPorts(3, QStringLiteral("5"));
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("SearchPorts|COM5 status = port_open"),
                          QStringLiteral("clsSeeker| sending *ID?"),
                          QStringLiteral("from serial device:| received KELDO-X"),
                          QStringLiteral("SearchComPorts|FOUND AN KELDO-X ON COM5"),
                          QStringLiteral("SearchPorts|Back to COM5...")}));
    QCOMPARE(bench.sentTo(5), QStringList{QStringLiteral("*ID?")});
}

void TestSearchPorts::aFoundUnitIsBoundWithItsSettings()
{
    SearchBench bench;
    bench.unit(5);
    SearchPorts(3, QStringLiteral("5"));
    const auto device = app().devices[1];
    QVERIFY(device);
    QCOMPARE(bench.rows[1]->mDevice.get(), device.get());
    QCOMPARE(device->Connection(), 1);
    QCOMPARE(device->DebugInfo(), QStringLiteral("DUTS( 1) on COM 5Channel  1"));
    QCOMPARE(device->commPort()->PortNumber(), std::int16_t(5));
    QCOMPARE(bench.rows[1]->status, 1);
    QVERIFY(bench.rows[1]->exists);
    QVERIFY(!app().devices[2]);
    QVERIFY(!bench.rows[2]->exists);

    // Both switches for message boxes are on: the port's and the unit's.
    bench.fixture.unplug(5);
    bench.fixture.boxes.expect(checkConnections, MessageBox::Exclamation);
    bench.fixture.boxes.expect(QStringLiteral("The serial port is not open"));
    device->InitThePort();
}

void TestSearchPorts::theUnitsOwnPortIsClosedAfterItWasBound()
{
    SearchBench bench;
    bench.unit(5);
    int clicks = 0;
    bench.rows[1]->onClick = [&](FakeChannelRow &row) {
        QVERIFY(!row.mDevice->PortIsOpen()); // the second click finds it closed as well
        row.mDevice->commPort()->InitializePort();
        QVERIFY(row.mDevice->PortIsOpen()); // the seeker has let go of it
        ++clicks;
    };
    SearchPorts(3, QStringLiteral("5"));
    QCOMPARE(clicks, 2);
    QVERIFY(app().devices[1]->PortIsOpen()); // channel 1 is connected at the end, for good
}

void TestSearchPorts::theSeekerIsGoneAndItsPortClosedAtTheEnd()
{
    SearchBench bench;
    bench.answerAlways(5, "x");
    bool wasThere = false;
    bench.channels->onProgress = [&](int value) {
        wasThere = wasThere || (value == 11 && app().search);
    };
    bench.fixture.boxes.expect(checkConnections);
    SearchPorts(3, QStringLiteral("5"));
    QVERIFY(wasThere);
    QVERIFY(!app().search);
    clsCommPort other;
    other.setPortNumber(5);
    QVERIFY(other.InitializePort());
}

void TestSearchPorts::twoUnitsFillTheirSlotsInPortOrder()
{
    SearchBench bench;
    bench.unit(7, addressedUnit(0));
    bench.unit(3);
    SearchPorts(1);
    QCOMPARE(app().foundUnits, std::int16_t(2));
    QCOMPARE(app().devices[1]->commPort()->PortNumber(), std::int16_t(3));
    QCOMPARE(app().devices[2]->commPort()->PortNumber(), std::int16_t(7));
    QCOMPARE(app().devices[2]->DebugInfo(), QStringLiteral("DUTS( 2) on COM 7Channel  2"));
    QVERIFY(!app().devices[3]);
    QCOMPARE(
        bench.calls->filter(QStringLiteral("optPortNumClick")),
        (QStringList{QStringLiteral("row1.optPortNumClick"), QStringLiteral("row2.optPortNumClick"),
                     QStringLiteral("row1.optPortNumClick")}));
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("SearchPorts|COM3 status = port_open"),
                          QStringLiteral("clsSeeker| sending *ID?"),
                          QStringLiteral("from serial device:| received KELDO-X"),
                          QStringLiteral("SearchComPorts|FOUND AN KELDO-X ON COM3"),
                          QStringLiteral("SearchPorts|COM7 status = port_open"),
                          QStringLiteral("clsSeeker| sending *ID?"),
                          QStringLiteral("from serial device:| received TOVIN-R"),
                          QStringLiteral("SearchComPorts|FOUND AN KELDO-X ON COM7"),
                          QStringLiteral("SearchPorts|Back to COM3...")}));
}

void TestSearchPorts::panelFourShowsAPortThatIsOpen()
{
    SearchBench bench;
    app().search = makeSearch();
    SearchComPorts(5, 0); // no such port
    QCOMPARE(*bench.calls, (QStringList{QStringLiteral("main.panel1 ") + searching,
                                        QStringLiteral("channels.panel4 <>"),
                                        QStringLiteral("channels.panel4 <     >")}));
    bench.calls->clear();
    bench.answerAlways(5, "1");
    SearchComPorts(5, 0);
    QVERIFY(!app().search->seeker()->ComPort().IsOpen()); // others may have the port again
    QCOMPARE(*bench.calls, (QStringList{QStringLiteral("main.panel1 ") + searching,
                                        QStringLiteral("channels.panel4 <>"),
                                        QStringLiteral("channels.panel4 <     >")}));
}

KELDOX_TEST(TestSearchPorts)
#include "TestSearchPorts.moc"
