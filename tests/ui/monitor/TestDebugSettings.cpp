// The IO monitor's menus: the debug switches and what they change.
#include "MonitorBench.h"
#include "support/TestMain.h"

#include "app/FakeStartUp.h"
#include "core/DebugSwitches.h"
#include "core/clsLogger.h"
#include "device/clsKeldoX.h"

#include <QComboBox>
#include <QFileInfo>
#include <QMenu>
#include <QPushButton>
#include <QStandardPaths>

class TestDebugSettings : public QObject
{
    Q_OBJECT

private slots:
    void menusAndTheirEntries();
    void entriesInvertTheirMarks();
    void byteSwitchesReachThePortsOfAllUnits();
    void byteSwitchesReachPortsMadeLater();
    void byteSwitchesReachTheMonitorsOwnPort();
    void bytesAreLoggedOnceSwitchedOn();
    void loggingOpensTheFileOnce();
    void loggingThatCannotOpenItsFileIsUnmarked();
    void aFailedWriteUnchecksLogging();
};

void TestDebugSettings::menusAndTheirEntries()
{
    const Fixture fixture;
    const frmIODaemon window;
    const QList<QPair<const char *, QString>> entries{
        {"mnuDebugDUT", QStringLiteral("Show more detailed error messages")},
        {"mnuDebugSerialBytesSent", QStringLiteral("Show bytes sent via serial port")},
        {"mnuDebugSerialBytesReceived", QStringLiteral("Show bytes received via serial port")},
        {"mnuDebugNetworkAnalyzerCommands", QStringLiteral("Show Network Analyzer commands")},
        {"mnuDebugDisplaySource", QStringLiteral("Display the source of each message")},
        {"mnuDebugLogging", QStringLiteral("Log events to a file")},
        {"mnuDebugDisplayTime", QStringLiteral("Display the time of each message")}};
    const auto *debug = window.findChild<QMenu *>(QStringLiteral("mnuDebug"));
    QCOMPARE(debug->title(), QStringLiteral("&Debug settings"));
    QCOMPARE(debug->actions().size(), entries.size());
    for (int i = 0; i < entries.size(); ++i) {
        QCOMPARE(debug->actions().at(i)->objectName(), QLatin1String(entries.at(i).first));
        QCOMPARE(debug->actions().at(i)->text().remove(QLatin1Char('&')), entries.at(i).second);
        QVERIFY(!debug->actions().at(i)->isChecked());
    }
    QCOMPARE(window.findChild<QMenu *>(QStringLiteral("mnuCommand"))->title(),
             QStringLiteral("&Send Commands"));
    QCOMPARE(window.findChild<QMenu *>(QStringLiteral("mnuHelp"))->title(),
             QStringLiteral("&Help"));
}

void TestDebugSettings::entriesInvertTheirMarks()
{
    Fixture fixture;
    frmIODaemon window;
    const auto marks = [&] {
        return QList<bool>{debugSwitches().detailedErrors,
                           debugSwitches().bytesSent,
                           debugSwitches().bytesReceived,
                           entry(window, "mnuDebugNetworkAnalyzerCommands")->isChecked(),
                           entry(window, "mnuDebugDisplaySource")->isChecked(),
                           window.isFileLoggingChecked()};
    };
    const QList<const char *> names{"mnuDebugDUT",
                                    "mnuDebugSerialBytesSent",
                                    "mnuDebugSerialBytesReceived",
                                    "mnuDebugNetworkAnalyzerCommands",
                                    "mnuDebugDisplaySource",
                                    "mnuDebugLogging"};
    for (int i = 0; i < names.size(); ++i) {
        QList<bool> expected(6, false);
        expected[i] = true;
        entry(window, names.at(i))->trigger();
        QCOMPARE(marks(), expected);
        entry(window, names.at(i))->trigger();
        QCOMPARE(marks(), QList<bool>(6, false));
    }
}

// A unit on a line of its own, its port open, with the log's events.
struct LoggedUnit
{
    explicit LoggedUnit(int slot) : device(std::make_shared<clsKeldoX>())
    {
        line.addUnit(std::make_shared<sim::SimulatedUnit>());
        fixture.plug(slot, line.device());
        app().devices[slot] = device;
        device->setConnection(clsKeldoX::SerialPort);
        device->commPort()->setPortNumber(static_cast<std::int16_t>(slot));
        device->InitThePort();
        installEventLog(log);
    }

    int bytesLogged(const QString &direction) const
    {
        return static_cast<int>(log->lines().filter(direction).filter(QStringLiteral("<")).size());
    }

    Fixture fixture;
    sim::SimulatedLine line;
    std::shared_ptr<clsKeldoX> device;
    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
};

void TestDebugSettings::byteSwitchesReachThePortsOfAllUnits()
{
    LoggedUnit unit(8);
    frmIODaemon window;
    entry(window, "mnuDebugSerialBytesSent")->trigger();
    unit.device->deviceWrite(QStringLiteral("*ID?"));
    QCOMPARE(unit.bytesLogged(QStringLiteral("sent")), 1);
    QCOMPARE(unit.bytesLogged(QStringLiteral("COM8 received")), 0);
    entry(window, "mnuDebugSerialBytesSent")->trigger();
    entry(window, "mnuDebugSerialBytesReceived")->trigger();
    unit.device->deviceWrite(QStringLiteral("*ID?"));
    QCOMPARE(unit.bytesLogged(QStringLiteral("sent")), 1);
    QVERIFY(unit.bytesLogged(QStringLiteral("COM8 received")) >= 1);
}

void TestDebugSettings::byteSwitchesReachPortsMadeLater()
{
    LoggedUnit unit(2);
    const frmIODaemon window;
    entry(window, "mnuDebugSerialBytesSent")->trigger();
    const auto later = std::make_shared<clsKeldoX>();
    later->setConnection(clsKeldoX::SerialPort);
    unit.device->commPort()->ClosePort();
    later->commPort()->setPortNumber(2);
    later->InitThePort();
    later->deviceWrite(QStringLiteral("*ID?"));
    QCOMPARE(unit.bytesLogged(QStringLiteral("sent")), 1);
}

void TestDebugSettings::byteSwitchesReachTheMonitorsOwnPort()
{
    const Machine machine;
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    frmIODaemon window;
    window.show();
    window.findChild<QComboBox *>(QStringLiteral("comboComPort"))
        ->setEditText(QStringLiteral("250"));
    window.findChild<QPushButton *>(QStringLiteral("cmdConnect"))->click();
    entry(window, "mnuDebugSerialBytesSent")->trigger();
    window.findChild<QComboBox *>(QStringLiteral("comboCommand"))
        ->setEditText(QStringLiteral("*ID?"));
    window.findChild<QPushButton *>(QStringLiteral("cmdSendCommand"))->click();
    QCOMPARE(log->lines().filter(QStringLiteral(" COM250 sent ")).size(), 1);
}

void TestDebugSettings::bytesAreLoggedOnceSwitchedOn()
{
    LoggedUnit unit(1);
    unit.device->deviceWrite(QStringLiteral("*ID?"));
    QCOMPARE(unit.bytesLogged(QStringLiteral("sent")), 0);
}

static QString logFileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/keldo-x/Keldo-X.log");
}

void TestDebugSettings::loggingOpensTheFileOnce()
{
    Fixture fixture;
    frmIODaemon window;
    struct CountingFile : LogFile
    {
        explicit CountingFile(int &made) { ++made; }
        void setPathname(const QString & /*name*/) override {}
        void OpenForOutput() override {}
        void OpenForAppend() override {}
        void Line_Output(const QString & /*text*/) override {}
        void closeFile() override {}
        bool success() const override { return true; }
        QString failure() const override { return {}; }
        qint64 size() const override { return 0; }
    };
    int opened = 0;
    const auto logger = std::make_shared<clsLogger>();
    logger->setLogFileName(QStringLiteral("Keldo-X.log"));
    logger->setFileMaker([&] { return std::make_unique<CountingFile>(opened); });
    // The monitor itself is no shared window here: the log shows on a fake.
    logger->setDisplayWindow(std::make_shared<FakeIOMonitor>());
    installEventLog(logger);
    QVERIFY(!logger->isFileActive());
    entry(window, "mnuDebugLogging")->trigger();
    QVERIFY(logger->isFileActive());
    QVERIFY(window.isFileLoggingChecked());
    QCOMPARE(opened, 1);
    const auto *shown = dynamic_cast<FakeIOMonitor *>(logger->displayWindow().get());
    QVERIFY(shown->texts.first().contains(QFileInfo(logFileName()).absolutePath()));
    entry(window, "mnuDebugLogging")->trigger();
    entry(window, "mnuDebugLogging")->trigger();
    QCOMPARE(opened, 1); // opening again would erase the run's log
}

void TestDebugSettings::loggingThatCannotOpenItsFileIsUnmarked()
{
    Fixture fixture;
    frmIODaemon window;
    installEventLog(std::make_shared<clsLogger>()); // without a file to write to
    fixture.boxes.expect(QStringLiteral("Events cannot be logged to a file.\r\n"
                                        "The log has no file."),
                         MessageBox::Exclamation);
    entry(window, "mnuDebugLogging")->trigger();
    QVERIFY(!window.isFileLoggingChecked());
}

void TestDebugSettings::aFailedWriteUnchecksLogging()
{
    Fixture fixture;
    const auto window = std::make_shared<frmIODaemon>();
    const auto file = std::make_shared<LogFileRecord>();
    const auto logger = std::make_shared<clsLogger>();
    logger->setDisplayWindow(window);
    logger->setFileMaker([&] { return std::make_unique<FakeLogFile>(file); });
    installEventLog(logger);
    entry(*window, "mnuDebugLogging")->trigger();
    logEvent(QStringLiteral("s"), QStringLiteral("first"));
    file->writeFails = true;
    fixture.boxes.expectStart(QStringLiteral("Error 75 ("));
    logEvent(QStringLiteral("s"), QStringLiteral("lost"));
    QVERIFY(!window->isFileLoggingChecked());
    QVERIFY(window->displayText().startsWith(QStringLiteral("opening ")));
    QVERIFY(window->displayText().contains(QStringLiteral("first\r\nlost\r\nError number = 75")));
    // Checked again it goes on.
    file->writeFails = false;
    entry(*window, "mnuDebugLogging")->trigger();
    logEvent(QStringLiteral("s"), QStringLiteral("second"));
    QVERIFY(file->contents.contains(QStringLiteral("s: first")));
    QVERIFY(file->contents.contains(QStringLiteral("s: second")));
    installEventLog(nullptr);
}

KELDOX_TEST(TestDebugSettings)
#include "TestDebugSettings.moc"
