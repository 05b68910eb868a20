// The IO monitor's raw commands: its own port, escapes, history, and replies as they arrive.
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include "app/AppState.h"
#include "platform/CommControl.h"
#include "sim/SimulatedLine.h"
#include "ui/monitor/frmIODaemon.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using namespace std::chrono_literals;

namespace {

// A shown monitor on a machine whose COM 3 leads to a simulated line; COM 250 is the one that the
// list leaves out.
struct Monitor
{
    Monitor()
    {
        installEventLog(log);
        line.setResponder([](const std::string &command) -> std::optional<std::string> {
            return "got " + command;
        });
        fixture.plug(3, line.device());
        fixture.plug(250, other.device());
        window.load();
        window.show();
        QTRY_COMPARE(ports()->count(), 1);
    }

    template <class Control> Control *find(const char *name) const
    {
        return window.findChild<Control *>(QLatin1String(name));
    }
    QComboBox *ports() const { return find<QComboBox>("comboComPort"); }
    QComboBox *command() const { return find<QComboBox>("comboCommand"); }
    void open() const { QTest::mouseClick(find<QPushButton>("cmdConnect"), Qt::LeftButton); }
    void type(const QString &text) const
    {
        // To the combo box: it has the focus, not its line edit.
        QCOMPARE(command()->lineEdit()->focusProxy(), command());
        command()->lineEdit()->selectAll();
        QTest::keyClicks(command(), text);
        QTest::keyClick(command(), Qt::Key_Return);
    }

    sim::SimulatedLine line;
    sim::SimulatedLine other;
    Fixture fixture;
    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    frmIODaemon window;
};

std::vector<std::string> lines(std::initializer_list<std::string> all)
{
    return all;
}

} // namespace

class TestIODaemonCommands : public QObject
{
    Q_OBJECT

private slots:
    void escapesAreSingleCharacters_data();
    void escapesAreSingleCharacters();
    void thePortListIsFilledWhenTheWindowIsShown();
    void aTypedPortSurvivesTheListing();
    void duringASearchThePortsAreNotListed();
    void openingSendsNothing();
    void aPortThatIsNoNumberIsReported();
    void aPortThatCannotBeOpenedIsLogged();
    void enterSendsTheCommandAndSelectsIt();
    void anErrorWhileSendingIsReported();
    void theButtonSendsToo();
    void blanksAreTrimmedBeforeEscapesAreReplaced();
    void withoutTheTickNoCarriageReturnIsSent();
    void sendCarriageReturnStartsTicked();
    void theReplyAppearsInTheLogAsItArrives();
    void aReplyWithoutAnEndAppearsToo();
    void theSameCommandStandsOnceInTheHistory();
    void anEmptyCommandIsACarriageReturnAlone();
    void onAClosedPortNothingIsSentButTheCommandIsRemembered();
    void closingTheWindowClosesItsPortAndStillTakesEvents();
    void closeComPortClosesThePort();
    void anUnpluggedPortIsToldInTheLogAlone();
};

void TestIODaemonCommands::escapesAreSingleCharacters_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("sent");
    QTest::newRow("carriage return") << "\\0D"
                                     << "\r";
    QTest::newRow("in the middle") << "A\\0DB"
                                   << "A\rB";
    QTest::newRow("lower case") << "\\4a"
                                << "J";
    QTest::newRow("two") << "\\41\\42"
                         << "AB";
    QTest::newRow("none") << "*ID?"
                          << "*ID?";
    QTest::newRow("too short at the end") << "A\\0"
                                          << "A\\0";
    QTest::newRow("a backslash alone") << "\\"
                                       << "\\";
    QTest::newRow("above 127") << "\\FF" << QString(QChar(0xFF));
    QTest::newRow("not hexadecimal") << "\\zz" << QString(QChar(0));
    QTest::newRow("an escaped backslash") << "\\5C0D"
                                          << "\\0D";
}

void TestIODaemonCommands::escapesAreSingleCharacters()
{
    QFETCH(QString, typed);
    QFETCH(QString, sent);
    QCOMPARE(frmIODaemon::withoutEscapes(typed), sent);
}

void TestIODaemonCommands::thePortListIsFilledWhenTheWindowIsShown()
{
    Monitor monitor;
    QCOMPARE(monitor.ports()->itemText(0), QStringLiteral(" 3"));
    QCOMPARE(monitor.ports()->currentText(), QStringLiteral(" 3"));
    QVERIFY(monitor.ports()->isEnabled());
}

void TestIODaemonCommands::aTypedPortSurvivesTheListing()
{
    Monitor monitor;
    monitor.ports()->setEditText(QStringLiteral("17"));
    monitor.window.hide();
    monitor.ports()->clear();
    monitor.ports()->setEditText(QStringLiteral("17"));
    monitor.window.show();
    QTRY_COMPARE(monitor.ports()->count(), 1);
    QCOMPARE(monitor.ports()->currentText(), QStringLiteral("17"));
}

void TestIODaemonCommands::duringASearchThePortsAreNotListed()
{
    Monitor monitor;
    monitor.window.hide();
    monitor.ports()->clear();
    app().search = makeSearch();
    monitor.window.show();
    QCoreApplication::processEvents();
    QCOMPARE(monitor.ports()->count(), 0);
    app().search.reset();
}

void TestIODaemonCommands::openingSendsNothing()
{
    Monitor monitor;
    monitor.open();
    QVERIFY(monitor.log->lines().contains(QStringLiteral("SearchPorts|COM3 status = port_open")));
    QCOMPARE(monitor.window.windowTitle(), QStringLiteral("IO monitor - COM3"));
    QVERIFY(!monitor.line.waitForCommands(1, 50ms));
}

void TestIODaemonCommands::aPortThatIsNoNumberIsReported()
{
    Monitor monitor;
    monitor.ports()->setEditText(QStringLiteral("abc"));
    monitor.fixture.boxes.expectStart(QStringLiteral("Error 13 ('Type mismatch')"));
    monitor.open();
    QVERIFY(monitor.fixture.boxes.shown().last().text.contains(
        QStringLiteral(" in frmIODaemon.cmdConnect_Click")));
    QCOMPARE(monitor.ports()->currentText(), QStringLiteral("abc")); // nothing is lost
}

void TestIODaemonCommands::aPortThatCannotBeOpenedIsLogged()
{
    Monitor monitor;
    monitor.ports()->setEditText(QStringLiteral("99"));
    monitor.open();
    QCOMPARE(monitor.log->lines().last(), QStringLiteral("IO monitor|COM99 cannot be opened"));
}

void TestIODaemonCommands::enterSendsTheCommandAndSelectsIt()
{
    Monitor monitor;
    monitor.open();
    monitor.type(QStringLiteral("*ID?"));
    QVERIFY(monitor.line.waitForCommands(1, 2s));
    QCOMPARE(monitor.line.commands(), lines({"*ID?"}));
    QCOMPARE(monitor.command()->lineEdit()->selectedText(), QStringLiteral("*ID?"));
}

void TestIODaemonCommands::anErrorWhileSendingIsReported()
{
    Monitor monitor;
    monitor.open();
    const auto failing = std::make_shared<FailingLog>();
    failing->failsOn = {QStringLiteral(" sending *ID?")};
    installEventLog(failing);
    monitor.fixture.boxes.expectStart(QStringLiteral("Error 5 ("));
    monitor.type(QStringLiteral("*ID?"));
    QVERIFY(monitor.fixture.boxes.shown().last().text.contains(
        QStringLiteral(" in comboCommand_KeyUp")));
    QCOMPARE(monitor.command()->currentText(), QStringLiteral("*ID?"));
}

void TestIODaemonCommands::theButtonSendsToo()
{
    Monitor monitor;
    monitor.open();
    monitor.command()->setEditText(QStringLiteral("*STEP?"));
    QTest::mouseClick(monitor.find<QPushButton>("cmdSendCommand"), Qt::LeftButton);
    QVERIFY(monitor.line.waitForCommands(1, 2s));
    QCOMPARE(monitor.line.commands(), lines({"*STEP?"}));
}

void TestIODaemonCommands::blanksAreTrimmedBeforeEscapesAreReplaced()
{
    Monitor monitor;
    monitor.open();
    monitor.type(QStringLiteral("  *ATT STEP?\\20  "));
    QVERIFY(monitor.line.waitForCommands(1, 2s));
    QCOMPARE(monitor.line.commands(), lines({"*ATT STEP? "}));
}

void TestIODaemonCommands::withoutTheTickNoCarriageReturnIsSent()
{
    Monitor monitor;
    monitor.open();
    monitor.find<QCheckBox>("chkCR")->setChecked(false);
    monitor.type(QStringLiteral("*ID?"));
    QTRY_COMPARE(monitor.line.bytesReceived(), std::size_t(4));
    monitor.type(QStringLiteral("\\0D"));
    QVERIFY(monitor.line.waitForCommands(1, 2s));
    QCOMPARE(monitor.line.commands(), lines({"*ID?"}));
}

void TestIODaemonCommands::sendCarriageReturnStartsTicked()
{
    Monitor monitor;
    QVERIFY(monitor.find<QCheckBox>("chkCR")->isChecked());
}

void TestIODaemonCommands::theReplyAppearsInTheLogAsItArrives()
{
    Monitor monitor;
    monitor.open();
    monitor.type(QStringLiteral("*ID?"));
    QTRY_COMPARE(monitor.log->lines().last(),
                 QStringLiteral("from serial device:| received got *ID?"));
    // Unasked for, several lines at once, and longer than one comm event.
    const std::string longLine(300, 'x');
    monitor.line.send("one\r\ntwo\r" + longLine + "\r");
    const QStringList expected{
        QStringLiteral("from serial device:| received one"),
        QStringLiteral("from serial device:| received two"),
        QStringLiteral("from serial device:| received ") + QString::fromStdString(longLine),
    };
    QTRY_COMPARE(monitor.log->lines().mid(monitor.log->lines().size() - 3), expected);
}

void TestIODaemonCommands::aReplyWithoutAnEndAppearsToo()
{
    Monitor monitor;
    monitor.open();
    monitor.line.send("no end");
    QTRY_COMPARE(monitor.log->lines().last(),
                 QStringLiteral("from serial device:| received no end"));
}

void TestIODaemonCommands::theSameCommandStandsOnceInTheHistory()
{
    Monitor monitor;
    monitor.open();
    for (const char *text : {"*ID?", "*STEP?", "*ID?", "*id?"})
        monitor.type(QLatin1String(text));
    QCOMPARE(monitor.command()->count(), 3);
    QCOMPARE(monitor.command()->itemText(0), QStringLiteral("*ID?"));
    QCOMPARE(monitor.command()->itemText(1), QStringLiteral("*STEP?"));
    QCOMPARE(monitor.command()->itemText(2), QStringLiteral("*id?"));
}

void TestIODaemonCommands::anEmptyCommandIsACarriageReturnAlone()
{
    Monitor monitor;
    monitor.open();
    monitor.type(QString());
    monitor.type(QString());
    QTRY_COMPARE(monitor.line.bytesReceived(), std::size_t(2));
    QCOMPARE(monitor.command()->count(), 1);
    QCOMPARE(monitor.command()->itemText(0), QString());
}

void TestIODaemonCommands::onAClosedPortNothingIsSentButTheCommandIsRemembered()
{
    Monitor monitor;
    monitor.type(QStringLiteral("*ID?"));
    QCOMPARE(monitor.command()->count(), 1);
    QVERIFY(!monitor.line.waitForCommands(1, 50ms));
    QVERIFY(!monitor.log->lines().contains(QStringLiteral("IO monitor| sending *ID?")));
}

void TestIODaemonCommands::closingTheWindowClosesItsPortAndStillTakesEvents()
{
    Monitor monitor;
    monitor.open();
    monitor.window.close();
    QVERIFY(!monitor.window.isVisible());
    QVERIFY(!monitor.window.windowTitle().contains(QStringLiteral("COM3")));
    monitor.window.Display(QStringLiteral("source"), QStringLiteral("late news"));
    QVERIFY(monitor.window.displayText().contains(QStringLiteral("late news")));
    // The port is free again.
    CommControl control;
    control.setCommPort(3);
    control.setPortOpen(true);
    QVERIFY(control.portOpen());
}

void TestIODaemonCommands::closeComPortClosesThePort()
{
    Monitor monitor;
    monitor.window.closeComPort(); // without a seeker: harmless
    monitor.open();
    monitor.window.closeComPort();
    monitor.type(QStringLiteral("*ID?"));
    QVERIFY(!monitor.line.waitForCommands(1, 50ms));
}

void TestIODaemonCommands::anUnpluggedPortIsToldInTheLogAlone()
{
    Monitor monitor;
    monitor.open();
    monitor.line.unplug();
    QTRY_VERIFY(!monitor.window.windowTitle().contains(QStringLiteral("COM3")));
    QVERIFY(monitor.log->lines().last().startsWith(QStringLiteral("clsCommPort|COM3 (")));
}

KELDOX_TEST(TestIODaemonCommands)
#include "TestIODaemonCommands.moc"
