// Both real windows when a unit is read again and when it goes: what one shows, the other shows.
#include "Road.h"

#include "device/clsKeldoX.h"
#include "sim/SimulatedLine.h"
#include "widgets/IndicatorLight.h"
#include "widgets/PanelStatusBar.h"

using namespace road;

class TestRoadOfALostUnit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void theSearchConnectsTheUnit();
    void f5InTheChannelsWindowReadsTheUnitAgain();
    void typedTextsAndUnconfirmedValuesAreMarked();
    void anUnpluggedUnitLeavesNothingInEitherWindow();
    void itIsConnectedAgainWithItsOptions();

private:
    static QString panel(const char *windowName, int number)
    {
        return control<PanelStatusBar>(windowName, "StatusBar")->panelText(number);
    }
    void plugTheUnit();

    std::unique_ptr<Fixture> m_fixture;
    std::shared_ptr<sim::SimulatedUnit> m_unit;
    std::unique_ptr<sim::SimulatedLine> m_line;
};

void TestRoadOfALostUnit::plugTheUnit()
{
    m_line = std::make_unique<sim::SimulatedLine>();
    m_line->addUnit(m_unit);
    m_fixture->plug(5, m_line->device());
}

void TestRoadOfALostUnit::initTestCase()
{
    m_fixture = std::make_unique<Fixture>();
    sim::UnitSettings settings;
    settings.firmware = "KELDO-X REV 3.17";
    settings.step = 260;
    settings.attenuation = 12.5;
    settings.inputAttenuation = 3;
    settings.bypass = true;
    m_unit = std::make_shared<sim::SimulatedUnit>(settings);
    plugTheUnit();
    startProgram();
}

void TestRoadOfALostUnit::cleanupTestCase()
{
    m_fixture.reset();
}

void TestRoadOfALostUnit::theSearchConnectsTheUnit()
{
    trigger(mainName, "mnuConnectComport");
    for (const char *name : {mainName, channelsName})
        QCOMPARE(panel(name, 1), QStringLiteral("CONNECTED ON COM5"));
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("106.5"));
    QVERIFY(control<QWidget>(mainName, "HScroll1")->isEnabled());
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanAtten_1")->text(), QStringLiteral("12.5"));
    QCOMPARE(control<IndicatorLight>(mainName, "ShapeOneBitLight")->toolTip(),
             QStringLiteral("3 dB"));
}

void TestRoadOfALostUnit::f5InTheChannelsWindowReadsTheUnitAgain()
{
    m_unit->answer("*STEP 300");
    m_unit->answer("*ATTN 20");
    m_unit->answer("INPUT ATTN 7");
    m_unit->answer("*ACT_ 0");
    m_line->clearCommands();
    QWidget *channels = window(channelsName);
    channels->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(channels));
    QTest::keyClick(channels, Qt::Key_F5);
    QCOMPARE(m_line->commands(),
             (std::vector<std::string>{"*STEP?", "*AGC_?", "*ATTN?", "INPUT ATTN?", "*ACT_?",
                                       "*ZNCM?", "*ZNSE?"}));
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("107.5"));
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanFreq_1")->text(), QStringLiteral("107.5"));
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanAtten_1")->text(), QStringLiteral("20"));
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanInputAtten_1")->text(), QStringLiteral("7"));
    QVERIFY(!control<QCheckBox>(channelsName, "chkChanBYP_1")->isChecked());
    QCOMPARE(control<IndicatorLight>(mainName, "ShapeOneBitLight")->toolTip(),
             QStringLiteral("7 dB"));
}

void TestRoadOfALostUnit::typedTextsAndUnconfirmedValuesAreMarked()
{
    auto *frequency = control<QLineEdit>(mainName, "txtCurrentFreq");
    frequency->selectAll();
    QTest::keyClicks(frequency, QStringLiteral("101,5"));
    const auto unit = app().currentDevice;
    for (const UnitValue value : {UnitValue::Frequency, UnitValue::Attenuation, UnitValue::AGC})
        emit unit->ConfirmationChange(value, false);
    picture(mainName, "main-9-marks");
    picture(channelsName, "channels-9-marks");
    QCOMPARE(frequency->accessibleDescription(), QStringLiteral("not sent, unconfirmed"));
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanFreq_1")->accessibleDescription(),
             QStringLiteral("unconfirmed"));
}

void TestRoadOfALostUnit::anUnpluggedUnitLeavesNothingInEitherWindow()
{
    m_fixture->boxes.acceptAll();
    m_line->setFault(sim::Fault::Unplug);
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("105"));
    for (const char *name : {mainName, channelsName})
        QCOMPARE(panel(name, 1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(panel(channelsName, 2), QString());
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QString());
    for (const char *name :
         {"txtChanFreq_1", "txtChanAtten_1", "txtChanInputAtten_1", "txtChanAGCoffset_1"}) {
        auto *box = control<QLineEdit>(channelsName, name);
        QCOMPARE(box->text(), QString());
        QVERIFY2(!box->isEnabled(), name);
        QCOMPARE(box->accessibleDescription(), QString());
    }
    QVERIFY(!control<QCheckBox>(channelsName, "chkChanAGC_1")->isEnabled());
    QVERIFY(control<QRadioButton>(channelsName, "optPortNum_1")->isEnabled());
    QVERIFY(!control<QAction>(mainName, "mnuOptionsReadAgain")->isEnabled());
}

void TestRoadOfALostUnit::itIsConnectedAgainWithItsOptions()
{
    m_fixture->unplug(5);
    plugTheUnit();
    control<QRadioButton>(channelsName, "optPortNum_1")->click();
    for (const char *name : {mainName, channelsName})
        QCOMPARE(panel(name, 1), QStringLiteral("CONNECTED ON COM5"));
    const auto commands = m_line->commands();
    QVERIFY(std::find(commands.begin(), commands.end(), "*MXAT?") != commands.end());
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->accessibleDescription(), QString());
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanAtten_1")->text(), QStringLiteral("20"));
    QVERIFY(control<QWidget>(channelsName, "udAtten_1")->isEnabled());
}

KELDOX_TEST(TestRoadOfALostUnit)
#include "TestRoadOfALostUnit.moc"
