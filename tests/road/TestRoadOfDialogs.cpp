// The operator's road beyond tuning: the known port, presets, polling, the IO monitor with its own
// port and its log file, and the information windows.
#include "Road.h"

#include "platform/Application.h"
#include "platform/SettingsStore.h"
#include "platform/TimerControl.h"
#include "sim/SimulatedLine.h"
#include "ui/monitor/frmIODaemon.h"

using namespace road;

class TestRoadOfDialogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void aKnownPortIsChosenAndConnected();
    void aPresetIsSetAndRecalled();
    void pollingIsSwitchedAndItsIntervalSet();
    void theMonitorShowsTheExchange();
    void theLogGoesToItsFile();
    void aRawCommandIsAnsweredOnAPortOfItsOwn();
    void informationWindowsOpen();
    void anAddressableLineIsChosenAndConnected();

private:
    static frmIODaemon *monitor();

    std::unique_ptr<Fixture> m_fixture;
    std::shared_ptr<sim::SimulatedUnit> m_unit = std::make_shared<sim::SimulatedUnit>();
    std::unique_ptr<sim::SimulatedLine> m_line;
    std::unique_ptr<sim::SimulatedLine> m_shared;  // seven addressable units
    std::unique_ptr<sim::SimulatedLine> m_service; // the highest port: it has to be typed
};

void TestRoadOfDialogs::initTestCase()
{
    // After the road before has ended "the program", loops start only when they run again.
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
    QApplication::exec();
    m_fixture = std::make_unique<Fixture>();
    m_line = std::make_unique<sim::SimulatedLine>();
    m_line->addUnit(m_unit);
    m_shared = std::make_unique<sim::SimulatedLine>();
    for (int address = 1; address <= 7; ++address) {
        sim::UnitSettings settings;
        settings.identity = "TOVIN-R";
        settings.address = address;
        m_shared->addUnit(std::make_shared<sim::SimulatedUnit>(settings));
    }
    m_service = std::make_unique<sim::SimulatedLine>();
    m_service->addUnit(std::make_shared<sim::SimulatedUnit>());
    m_fixture->plug(4, m_line->device());
    m_fixture->plug(6, m_shared->device());
    m_fixture->plug(9, m_service->device());
    startProgram();
}

void TestRoadOfDialogs::cleanupTestCase()
{
    m_fixture.reset();
}

frmIODaemon *TestRoadOfDialogs::monitor()
{
    return qobject_cast<frmIODaemon *>(window(monitorName));
}

// The connect-to-port dialog has its list.
static bool listed(QWidget *dialog)
{
    return dialog->findChild<QComboBox *>(QStringLiteral("comboComPort"))->isEnabled();
}

void TestRoadOfDialogs::aKnownPortIsChosenAndConnected()
{
    const auto choose = [](QWidget *dialog) {
        picture(dialog, "connect-to-port");
        auto *ports = dialog->findChild<QComboBox *>(QStringLiteral("comboComPort"));
        QCOMPARE(ports->count(), 2);
        QCOMPARE(ports->currentText(), QStringLiteral(" 4"));
        QTest::keyClick(ports, Qt::Key_Return);
    };
    const Hand hand(choose, listed);
    trigger(mainName, "mnuConnectKnownComport");
    QVERIFY(hand.acted);
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("CONNECTED ON COM4"));
    QCOMPARE(mainText("lblCurrentChannel"), QStringLiteral("Active Channel 1"));
    QVERIFY(app().guard().isUp());
}

void TestRoadOfDialogs::aPresetIsSetAndRecalled()
{
    auto *setPresets = control<QAbstractButton>(mainName, "cmdSetPresets");
    auto *preset = control<QAbstractButton>(mainName, "cmdSetDUTFreq_4");
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("146.5"));
    QTest::mouseClick(setPresets, Qt::LeftButton);
    QTest::mouseClick(preset, Qt::LeftButton);
    picture(mainName, "main-7-set-presets");
    QTest::mouseClick(setPresets, Qt::LeftButton);
    QCOMPARE(SettingsStore::read(applicationTitle(), QStringLiteral("Settings"),
                                 QStringLiteral("PresetFrequency 4")),
             QStringLiteral(" 146.5"));

    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("120"));
    QCOMPARE(m_unit->step(), 800);
    QTest::mouseClick(preset, Qt::LeftButton);
    QCOMPARE(m_unit->step(), 1860);
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("146.5"));
}

void TestRoadOfDialogs::pollingIsSwitchedAndItsIntervalSet()
{
    const auto *timer = control<TimerControl>(mainName, "tmrPollingTimer");
    trigger(mainName, "mnuEnablePolling");
    QVERIFY(timer->isEnabled());
    const Hand hand([](QWidget *box) {
        picture(box, "input-box");
        typeInto(box->findChild<QLineEdit *>(QStringLiteral("Text1")), QStringLiteral("250"));
    });
    trigger(mainName, "mnuPollingInterval");
    QVERIFY(hand.acted);
    QCOMPARE(timer->interval(), 250);
}

void TestRoadOfDialogs::theMonitorShowsTheExchange()
{
    trigger(mainName, "mnuOptionsIOdaemon");
    QVERIFY(monitor()->isVisible());
    trigger(monitorName, "mnuDebugSerialBytesReceived");
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("130"));
    QVERIFY(
        monitor()->displayText().contains(QStringLiteral(" sending *STEP 1200 to com port 4\r\n")));
    QVERIFY(monitor()->displayText().contains(QStringLiteral("4c 4f 43 4b 45 44 0d")));
    trigger(monitorName, "mnuDebugSerialBytesReceived");
}

void TestRoadOfDialogs::theLogGoesToItsFile()
{
    trigger(monitorName, "mnuDebugLogging");
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("140"));
    QFile log(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
              QStringLiteral("/keldo-x/Keldo-X.log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray written = log.readAll();
    QVERIFY(written.contains("clsKeldoX:  sending *STEP 1600 to com port 4\r\n\r\n"));
    trigger(monitorName, "mnuDebugLogging");
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("141"));
    log.seek(0);
    QCOMPARE(log.readAll(), written);
}

void TestRoadOfDialogs::aRawCommandIsAnsweredOnAPortOfItsOwn()
{
    auto *ports = control<QComboBox>(monitorName, "comboComPort");
    QTRY_VERIFY(ports->isEnabled());
    ports->lineEdit()->selectAll();
    QTest::keyClicks(ports, QStringLiteral("9"));
    QTest::mouseClick(control<QAbstractButton>(monitorName, "cmdConnect"), Qt::LeftButton);
    typeInto(control<QComboBox>(monitorName, "comboCommand")->lineEdit(),
             QStringLiteral("*START FREQ?"));
    // As the last line: the connected unit has said the same before.
    QTRY_VERIFY(monitor()->displayText().endsWith(QStringLiteral(" received 100 MHz\r\n")));
    QTest::qWait(50); // the display is painted a little later
    picture(monitorName, "io-monitor");
    // The connected unit is not disturbed.
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("150"));
    QCOMPARE(m_unit->step(), 2000);
    monitor()->close();
}

void TestRoadOfDialogs::informationWindowsOpen()
{
    trigger(mainName, "mnuHelpContents");
    trigger(mainName, "mnuHelpContact");
    const Hand hand([](QWidget *about) {
        picture(about, "about");
        about->close();
    });
    trigger(mainName, "mnuHelpAbout");
    QVERIFY(hand.acted);
    for (const char *name : {"frmOperation", "frmContact"}) {
        auto *shown = window(mainName)->findChild<QWidget *>(QString::fromLatin1(name));
        QVERIFY(shown && shown->isVisible());
        picture(shown, name);
        shown->close();
    }
}

// The last address is the silent one: what it leaves in the status bar must not stay there.
void TestRoadOfDialogs::anAddressableLineIsChosenAndConnected()
{
    const auto choose = [](QWidget *dialog) {
        auto *ports = dialog->findChild<QComboBox *>(QStringLiteral("comboComPort"));
        QTest::keyClick(ports, Qt::Key_Down);
        QCOMPARE(ports->currentText(), QStringLiteral(" 6"));
        QTest::keyClick(dialog->findChild<QCheckBox *>(QStringLiteral("chkTovinR")), Qt::Key_Space);
        QTest::keyClick(ports, Qt::Key_Return);
    };
    const Hand hand(choose, listed);
    trigger(mainName, "mnuConnectKnownComport");
    QVERIFY(hand.acted);
    QCOMPARE(app().foundUnits, std::int16_t{7});
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("CONNECTED ON COM6"));
    QCOMPARE(mainText("lblCurrentChannel"), QStringLiteral("Active Channel 1"));
    picture(channelsName, "channels-5-shared-line");
    // The seventh unit stands on the second tab.
    QTest::keyClick(control<QRadioButton>(channelsName, "optPortNum_7"), Qt::Key_Space);
    QTRY_COMPARE(mainText("lblCurrentChannel"), QStringLiteral("Active Channel 7"));
    QTRY_VERIFY(app().guard().isUp());
    QCOMPARE(m_shared->commands().back(), std::string("*STEP?"));
}

KELDOX_TEST(TestRoadOfDialogs)
#include "TestRoadOfDialogs.moc"
