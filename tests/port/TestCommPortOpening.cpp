// Opening and closing the serial port object: the settings it makes, its status numbers, and what
// is shown for each error of the serial control.
#include "CommPortOnLine.h"
#include "support/TestMain.h"

#include "app/AppState.h"
#include "platform/RunTimeError.h"
#include "platform/TestHooks.h"

class TestCommPortOpening : public QObject
{
    Q_OBJECT

private slots:
    void init() { on = std::make_unique<CommPortOnLine>(); }
    void cleanup() { on.reset(); }
    void aFreshObjectIsClosedAndHasNoNumber();
    void aNumberOfZeroOrBelowIsIgnored();
    void openingMakesTheSettings_data();
    void openingMakesTheSettings();
    void openingTellsItsStatus();
    void openingDiscardsWhatWaitedAndEmptiesTheBuffer();
    void openingAnOpenPortOpensItAfresh();
    void aFreshObjectHandsItsMinusOneToTheControl();
    void theNumberIsSetBeforeEverythingElse();
    void aPortThatSomebodyHoldsIsInUse();
    void aNumberWithoutADeviceTellsToCheckTheCables();
    void listedErrorsAreReported_data();
    void listedErrorsAreReported();
    void anUnlistedErrorShowsAnEmptyBox_data();
    void anUnlistedErrorShowsAnEmptyBox();
    void withDisplayErrorsOffNothingIsShown_data();
    void withDisplayErrorsOffNothingIsShown();
    void boxesCarryTheApplicationsStyle();
    void openPortOpensAPortThatIsClosedAndNoOther();
    void openPortRaisesTheControlsErrors();
    void closingEmptiesTheBufferAndIsHarmlessOnAClosedPort();
    void thePortClosesWithItsObject();
    void theHostWindowIsHiddenAndSaysWhy();
    void debugInfoIsStored();

private:
    QString inUseText() const
    {
        return QStringLiteral("The serial port (COM3:) is already in use. If there is another "
                              "program using the port, you need to close it and re-start this "
                              "one.");
    }

    std::unique_ptr<CommPortOnLine> on;
};

static const QString checkCables = QStringLiteral(
    "Check data and power connections to KELDO-X filter then select the 'connect' from the menu.");

void TestCommPortOpening::aFreshObjectIsClosedAndHasNoNumber()
{
    const clsCommPort port;
    QCOMPARE(port.PortNumber(), std::int16_t(-1));
    QCOMPARE(port.ComPortStatus(), 0);
    QCOMPARE(port.ComPortStatusString(), QStringLiteral("port_closed"));
    QCOMPARE(port.PortMode(), 0);
    QCOMPARE(port.Buffer(), QString());
    QCOMPARE(port.BufferSize(), std::int16_t(0));
    QVERIFY(!port.IsOpen());
}

void TestCommPortOpening::aNumberOfZeroOrBelowIsIgnored()
{
    on->port->setPortNumber(0);
    QCOMPARE(on->port->PortNumber(), std::int16_t(3));
    on->port->setPortNumber(-7);
    QCOMPARE(on->port->PortNumber(), std::int16_t(3));
    on->port->setPortNumber(255);
    QCOMPARE(on->port->PortNumber(), std::int16_t(255));
}

void TestCommPortOpening::openingMakesTheSettings_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("threshold");
    QTest::addRow("polling") << 0 << 0;
    QTest::addRow("event") << 1 << 1;
    QTest::addRow("any other") << 2 << 0;
}

void TestCommPortOpening::openingMakesTheSettings()
{
    QFETCH(const int, mode);
    QFETCH(const int, threshold);
    on->port->setPortMode(mode);
    QCOMPARE(on->port->PortMode(), mode);
    QVERIFY(on->port->InitializePort());
    const CommControl &control = on->control();
    QCOMPARE(control.commPort(), 3);
    QCOMPARE(control.settings(), QStringLiteral("19200,N,8,1"));
    QCOMPARE(control.RThreshold(), threshold);
    QCOMPARE(control.InputLen(), threshold);
    QVERIFY(control.DTREnable());
    QVERIFY(!control.RTSEnable());
    QCOMPARE(control.InBufferSize(), 16000);
    QVERIFY(control.portOpen());
}

void TestCommPortOpening::openingTellsItsStatus()
{
    QVERIFY(on->port->InitializePort());
    QCOMPARE(on->port->ComPortStatus(), 1);
    QCOMPARE(on->port->ComPortStatusString(), QStringLiteral("port_open"));
    QVERIFY(on->port->IsOpen());
    on->port->ClosePort();
    QCOMPARE(on->port->ComPortStatus(), 0);
    QVERIFY(!on->port->IsOpen());
}

void TestCommPortOpening::openingDiscardsWhatWaitedAndEmptiesTheBuffer()
{
    on->openWithReply({});
    on->line.send("waiting\r");
    QTRY_COMPARE_WITH_TIMEOUT(on->control().inBufferCount(), 8, 2000);
    on->port->setBuffer(QStringLiteral("old"));
    QVERIFY(on->port->InitializePort());
    QCOMPARE(on->control().inBufferCount(), 0);
    QCOMPARE(on->port->Buffer(), QString());
}

void TestCommPortOpening::openingAnOpenPortOpensItAfresh()
{
    on->openWithReply("OK");
    QVERIFY(on->port->InitializePort());
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
    QCOMPARE(on->port->Buffer(), QStringLiteral("OK\r"));
}

void TestCommPortOpening::aFreshObjectHandsItsMinusOneToTheControl()
{
    clsCommPort port;
    on->fixture.boxes.expect(checkCables, 48); // the control's 8002
    QVERIFY(!port.InitializePort());
    QCOMPARE(port.ComPortStatus(), 3);
    QCOMPARE(port.ComPortStatusString(), QStringLiteral("port_error"));
}

void TestCommPortOpening::theNumberIsSetBeforeEverythingElse()
{
    clsCommPort port;
    port.setDisplayErrors(false);
    QVERIFY(!port.InitializePort());
    QVERIFY(port.host().CommCtl->settings() != QStringLiteral("19200,N,8,1"));
}

void TestCommPortOpening::aPortThatSomebodyHoldsIsInUse()
{
    QVERIFY(on->port->InitializePort());
    clsCommPort second;
    second.setPortNumber(3);
    on->fixture.boxes.expect(inUseText(), 48);
    QVERIFY(!second.InitializePort());
    QCOMPARE(second.ComPortStatus(), 2);
    QCOMPARE(second.ComPortStatusString(), QStringLiteral("port_already_in_use"));
    QVERIFY(!second.IsOpen());
    QVERIFY2(second.OpenFailure().endsWith(QStringLiteral("is open in this program already.")),
             qPrintable(second.OpenFailure()));
    QVERIFY(on->port->IsOpen());
    on->port->ClosePort();
    QVERIFY(second.InitializePort());
    QCOMPARE(second.ComPortStatus(), 1);
    QCOMPARE(second.OpenFailure(), QString());
}

void TestCommPortOpening::aNumberWithoutADeviceTellsToCheckTheCables()
{
    on->port->setPortNumber(200);
    on->fixture.boxes.expect(checkCables, 48);
    QVERIFY(!on->port->InitializePort());
    QCOMPARE(on->port->ComPortStatus(), 3);
    QCOMPARE(on->port->OpenFailure(), QString()); // there is nothing to say about it
}

void TestCommPortOpening::listedErrorsAreReported_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("start");
    const auto row = [](int number, const char *text, const char *description) {
        QTest::addRow("%d", number)
            << number
            << QStringLiteral("Error %1 (%2)\r\n%3 from KELDO-X Control Program\r\n in "
                              "clsCommPort.InitializePort\r\n")
                   .arg(number)
                   .arg(QString::fromLatin1(text), QString::fromLatin1(description));
    };
    row(8000, "Operation not valid while the port is opened", "");
    row(8012, "The device is not open", "");
    row(8015, "Could not set comm state", "");
    row(8018, "Operation valid only when the port is open", "");
    row(8020, "Error reading comm device", "");
    row(8021, "Internal error retrieving device control block for the port", "");
    row(380, "Invalid property value", "Invalid property value\r\n");
    row(383, "internal error - Property is read-only", "Property is read-only\r\n");
    row(394, "internal error - Property is read-only", "Property is write-only\r\n");
}

void TestCommPortOpening::listedErrorsAreReported()
{
    QFETCH(const int, number);
    QFETCH(const QString, start);
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    TestHooks::failOpening(number);
    on->fixture.boxes.expect(start, 48);
    QVERIFY(!on->port->InitializePort());
    QCOMPARE(on->port->ComPortStatus(), 3);
    QCOMPARE(log->events.size(), 1);
    QVERIFY(log->events.at(0).second.endsWith(
        QStringLiteral("from <clsCommPort.InitializePort>\r\n"))); // and no extra text
}

void TestCommPortOpening::anUnlistedErrorShowsAnEmptyBox_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {8001, 8003, 8006, 8010, 8013, 8019, 13, 51, 40000})
        QTest::addRow("%d", number) << number;
}

void TestCommPortOpening::anUnlistedErrorShowsAnEmptyBox()
{
    QFETCH(const int, number);
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    TestHooks::failOpening(number);
    on->fixture.boxes.expect(QString(), 48);
    QVERIFY(!on->port->InitializePort());
    QCOMPARE(on->port->ComPortStatus(), 3);
    QVERIFY(log->events.isEmpty());
}

void TestCommPortOpening::withDisplayErrorsOffNothingIsShown_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("status");
    QTest::addRow("in use") << 8005 << 2;
    QTest::addRow("no such port") << 8002 << 3;
    QTest::addRow("reported") << 8012 << 3;
    QTest::addRow("unlisted") << 8010 << 3;
}

void TestCommPortOpening::withDisplayErrorsOffNothingIsShown()
{
    QFETCH(const int, number);
    QFETCH(const int, status);
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    on->port->setDisplayErrors(false);
    TestHooks::failOpening(number);
    QVERIFY(!on->port->InitializePort());
    QCOMPARE(on->port->ComPortStatus(), status);
    QVERIFY(log->events.isEmpty());
}

void TestCommPortOpening::boxesCarryTheApplicationsStyle()
{
    app().messageBoxStyle = {0x1000, 0, 0};
    TestHooks::failOpening(8005);
    on->fixture.boxes.expect(inUseText());
    QVERIFY(!on->port->InitializePort());
    QCOMPARE(on->fixture.boxes.shown().at(0).style, 48 + 0x1000);
    QCOMPARE(on->fixture.boxes.shown().at(0).title, QStringLiteral("KELDO-X Control Program"));
}

void TestCommPortOpening::openPortOpensAPortThatIsClosedAndNoOther()
{
    on->openWithReply("OK");
    on->port->setBuffer(QStringLiteral("kept"));
    on->port->OpenPort(); // open already
    QCOMPARE(on->port->Buffer(), QStringLiteral("kept"));
    on->port->ClosePort();
    on->port->OpenPort();
    QCOMPARE(on->port->ComPortStatus(), 1);
    QVERIFY(on->port->WriteAndWaitForCr(QStringLiteral("*ID?\r")));
}

void TestCommPortOpening::openPortRaisesTheControlsErrors()
{
    TestHooks::failOpening(8005);
    QVERIFY_THROWS_EXCEPTION(RunTimeError, on->port->OpenPort());
    QCOMPARE(on->port->ComPortStatus(), 0);
}

void TestCommPortOpening::closingEmptiesTheBufferAndIsHarmlessOnAClosedPort()
{
    on->openWithReply({});
    on->port->setBuffer(QStringLiteral("12.5\r"));
    on->port->ClosePort();
    QCOMPARE(on->port->Buffer(), QString());
    QVERIFY(!on->control().portOpen());
    on->port->setBuffer(QStringLiteral("12.5\r"));
    on->port->ClosePort();
    QCOMPARE(on->port->ComPortStatus(), 0);
    QCOMPARE(on->port->Buffer(), QString());

    // Also after a failure: the status is closed, not the old error.
    TestHooks::failOpening(8005);
    on->port->setDisplayErrors(false);
    on->port->InitializePort();
    on->port->ClosePort();
    QCOMPARE(on->port->ComPortStatus(), 0);
}

void TestCommPortOpening::thePortClosesWithItsObject()
{
    QVERIFY(on->port->InitializePort());
    on->port.reset();
    clsCommPort second;
    second.setPortNumber(3);
    QVERIFY(second.InitializePort());
}

void TestCommPortOpening::theHostWindowIsHiddenAndSaysWhy()
{
    frmMScomm &host = on->port->host();
    QCOMPARE(host.Parent(), on->port.get());
    QVERIFY(!host.isWidgetType()); // nothing to be shown
    QCOMPARE(host.objectName(), QStringLiteral("frmMScomm"));
    QCOMPARE(
        host.property("label").toString(),
        QStringLiteral("This form exists only to hold some controls, and should never be visible"));
    for (const char *name : {"CommCtl", "tmrCommTimer2", "tmrCommTimer"})
        QVERIFY(host.findChild<QObject *>(QString::fromLatin1(name)));
    for (TimerControl *timer : {host.tmrCommTimer, host.tmrCommTimer2}) {
        timer->setTag(QStringLiteral("FALSE"));
        timer->setInterval(1);
        timer->setEnabled(true);
        QTRY_COMPARE_WITH_TIMEOUT(timer->tag(), QStringLiteral("TRUE"), 2000);
        QVERIFY(!timer->isEnabled());
    }
}

void TestCommPortOpening::debugInfoIsStored()
{
    QCOMPARE(on->port->DebugInfo(), QString());
    on->port->setDebugInfo(QStringLiteral("channel 3"));
    QCOMPARE(on->port->DebugInfo(), QStringLiteral("channel 3"));
}

KELDOX_TEST(TestCommPortOpening)
#include "TestCommPortOpening.moc"
