// A password that is sent, by a unit's owner or as a raw command, appears nowhere: not in the
// monitor, not in the log's file, not in a box, also on a line that sends it back.
#include "MonitorBench.h"
#include "support/TestMain.h"

#include "core/DebugSwitches.h"
#include "core/clsLogger.h"
#include "device/clsKeldoX.h"
#include "ui/dialogs/clsFileObject.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

using namespace std::chrono_literals;

namespace {

// The real monitor, log and file over a line that the test plays, with all debug switches on.
struct ToldEverything
{
    ToldEverything()
    {
        fixture.plug(3, line.device());
        fixture.plug(250, other.device());
        logger->setDisplayWindow(window);
        logger->setFileMaker([] { return std::make_unique<clsFileObject>(); });
        logger->setLogPath(folder.path());
        installEventLog(logger);
        for (const char *name : {"mnuDebugDUT", "mnuDebugSerialBytesSent",
                                 "mnuDebugSerialBytesReceived", "mnuDebugDisplaySource"})
            entry(*window, name)->trigger();
        logger->FileOpen();
        entry(*window, "mnuDebugLogging")->trigger();
        window->show();
        QTRY_COMPARE(find<QComboBox>("comboComPort")->count(), 1);
    }

    ~ToldEverything() { installEventLog(nullptr); }

    template <class Control> Control *find(const char *name) const
    {
        return window->findChild<Control *>(QLatin1String(name));
    }
    void open() const { QTest::mouseClick(find<QPushButton>("cmdConnect"), Qt::LeftButton); }
    void type(const QString &text) const
    {
        find<QComboBox>("comboCommand")->lineEdit()->selectAll();
        QTest::keyClicks(find<QComboBox>("comboCommand"), text);
        QTest::keyClick(find<QComboBox>("comboCommand"), Qt::Key_Return);
    }
    QString told()
    {
        QFile file(folder.filePath(QStringLiteral("log.txt")));
        [[maybe_unused]] const bool isThere = file.open(QIODevice::ReadOnly);
        QString all = window->displayText() + text1(*window)->toPlainText() +
                      QString::fromUtf8(file.readAll()) + fixture.boxes.texts().join(QString());
        const auto *history = find<QComboBox>("comboCommand");
        for (int i = 0; i < history->count(); ++i)
            all += history->itemText(i) + QLatin1Char('\n');
        return all + history->currentText();
    }
    // "hunter2", its pieces and its bytes.
    void expectNoPassword()
    {
        const QString all = told();
        for (const char *piece : {"hunter", "unter2", "68 75 6e", "74 65 72", "72 32"})
            QVERIFY2(!all.contains(QLatin1String(piece), Qt::CaseInsensitive),
                     qPrintable(QString::fromLatin1(piece) + QLatin1Char('\n') + all));
    }

    sim::SimulatedLine line;
    sim::SimulatedLine other;
    Fixture fixture;
    QTemporaryDir folder;
    std::shared_ptr<frmIODaemon> window = std::make_shared<frmIODaemon>();
    std::shared_ptr<clsLogger> logger = std::make_shared<clsLogger>();
};

} // namespace

class TestPasswords : public QObject
{
    Q_OBJECT

private slots:
    void ofAUnit_data();
    void ofAUnit();
    void theEndOfAPasswordExchange();
    void aLateEchoIsCountedOnly();
    void asARawCommand_data();
    void asARawCommand();
    void echoedInPieces();
    void echoedWithoutAnEnd();
    void onAClosedPortItStaysInTheBoxAlone();
    void otherCommandsAreToldAsEver();
};

void TestPasswords::ofAUnit_data()
{
    QTest::addColumn<int>("fault");
    QTest::addRow("answered") << int(sim::Fault::None);
    QTest::addRow("echoed") << int(sim::Fault::Echo);
    QTest::addRow("echoed in pieces") << int(sim::Fault::SplitReply);
    QTest::addRow("not answered") << int(sim::Fault::Silence);
}

void TestPasswords::ofAUnit()
{
    QFETCH(const int, fault);
    ToldEverything all;
    const auto unit = std::make_shared<clsKeldoX>();
    unit->setConnection(clsKeldoX::SerialPort);
    unit->commPort()->setPortNumber(3);
    unit->InitThePort();
    unit->commPort()->settimeOutMs(200);
    if (fault == int(sim::Fault::SplitReply))
        all.line.setResponder([](const std::string &command) { return command; });
    else
        all.line.addUnit(std::make_shared<sim::SimulatedUnit>());
    all.line.setFault(static_cast<sim::Fault>(fault));
    unit->deviceWrite(QStringLiteral("PASSWORD hunter2"));
    QVERIFY(all.line.waitForCommands(1, 2s));
    QCOMPARE(all.line.commands().front(), std::string("PASSWORD hunter2"));
    all.expectNoPassword();
    QVERIFY(
        all.told().contains(QStringLiteral(": ") + QStringLiteral(" sending PASSWORD ****\r\n")));
    QVERIFY(all.told().contains(QStringLiteral(" COM3 sent PASSWORD ****\r\n")));
    const bool answered = fault != int(sim::Fault::Silence);
    QCOMPARE(all.told().contains(QStringLiteral(" COM3 received ")), answered);
}

// The switches show bytes again from the next command on.
void TestPasswords::theEndOfAPasswordExchange()
{
    ToldEverything all;
    const auto unit = std::make_shared<clsKeldoX>();
    unit->setConnection(clsKeldoX::SerialPort);
    unit->commPort()->setPortNumber(3);
    unit->InitThePort();
    all.line.addUnit(std::make_shared<sim::SimulatedUnit>());
    unit->deviceWrite(QStringLiteral("password hunter2"));
    unit->deviceWrite(QStringLiteral("*ID?"));
    all.expectNoPassword();
    QVERIFY(all.told().contains(QStringLiteral("COM3 sent 5 bytes: 2a 49 44 3f 0d <*ID?.>")));
    QVERIFY(all.told().contains(QStringLiteral("<KELDO-X.>")));
}

void TestPasswords::aLateEchoIsCountedOnly()
{
    ToldEverything all;
    all.open();
    all.type(QStringLiteral("PASSWORD hunter2"));
    all.type(QStringLiteral("*ID?"));
    all.line.send("PASSWORD hunter2\r");
    QTRY_VERIFY(all.window->displayText().contains(QStringLiteral("received PASSWORD ****")));
    all.expectNoPassword();
}

void TestPasswords::asARawCommand_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addRow("as it is") << QStringLiteral("PASSWORD hunter2");
    QTest::addRow("small letters") << QStringLiteral("password hunter2");
    QTest::addRow("an escaped blank") << QStringLiteral("PASSWORD\\20hunter2");
    QTest::addRow("an escaped letter") << QStringLiteral("\\50ASSWORD hunter2");
    QTest::addRow("after another command") << QStringLiteral("*ID?\\0DPASSWORD hunter2");
}

void TestPasswords::asARawCommand()
{
    QFETCH(const QString, typed);
    ToldEverything all;
    all.line.setFault(sim::Fault::Echo);
    all.open();
    all.type(typed);
    QTRY_VERIFY(all.window->displayText().contains(QStringLiteral("received PASSWORD ****")));
    QVERIFY(QString::fromStdString(all.line.commands().back())
                .compare(QLatin1String("PASSWORD hunter2"), Qt::CaseInsensitive) == 0);
    QVERIFY(all.window->displayText().contains(QStringLiteral(" sending PASSWORD ****\r\n")));
    all.expectNoPassword();
    QCOMPARE(all.find<QComboBox>("comboCommand")->count(), 0);
    QCOMPARE(all.find<QComboBox>("comboCommand")->currentText(), QString());
}

// A line that pauses in the middle of its echo: what came is shown before the rest is there.
void TestPasswords::echoedInPieces()
{
    ToldEverything all;
    all.open();
    all.type(QStringLiteral("PASSWORD hunter2"));
    QVERIFY(all.line.waitForCommands(1, 2s));
    for (const char *piece : {"wait: hun", "ter", "2", "done"}) {
        all.line.send(piece);
        QTest::qWait(250);
    }
    QTRY_VERIFY(all.window->displayText().contains(QStringLiteral("received ****\r\n")));
    QVERIFY(all.window->displayText().contains(QStringLiteral("received wait: \r\n")));
    all.expectNoPassword();
}

// A long echo without a carriage return is shown in pieces, none of which ends in the password.
void TestPasswords::echoedWithoutAnEnd()
{
    ToldEverything all;
    all.open();
    all.type(QStringLiteral("PASSWORD hunter2"));
    QVERIFY(all.line.waitForCommands(1, 2s));
    std::string echo;
    for (int i = 0; i < 2000; ++i)
        echo += "hunter2";
    all.line.send(echo + "\r");
    QTRY_VERIFY(all.window->displayText().count(QStringLiteral("****")) > 500);
    QTest::qWait(200);
    all.expectNoPassword();
}

void TestPasswords::onAClosedPortItStaysInTheBoxAlone()
{
    ToldEverything all;
    all.type(QStringLiteral("PASSWORD hunter2"));
    QCOMPARE(all.find<QComboBox>("comboCommand")->currentText(),
             QStringLiteral("PASSWORD hunter2")); // nothing is lost
    QCOMPARE(all.find<QComboBox>("comboCommand")->count(), 0);
    QVERIFY(!all.window->displayText().contains(QStringLiteral("PASSWORD")));
}

void TestPasswords::otherCommandsAreToldAsEver()
{
    ToldEverything all;
    all.line.setFault(sim::Fault::Echo);
    all.open();
    all.type(QStringLiteral("*STEP 250"));
    QTRY_VERIFY(all.window->displayText().contains(QStringLiteral("received *STEP 250")));
    QVERIFY(all.window->displayText().contains(QStringLiteral("<*STEP 250.>")));
    QCOMPARE(all.find<QComboBox>("comboCommand")->itemText(0), QStringLiteral("*STEP 250"));
}

KELDOX_TEST(TestPasswords)
#include "TestPasswords.moc"
