// The operator's road: the real windows, driven by mouse and keyboard, against simulated units on
// real terminals. With KELDOX_PICTURES set it prints the exchange and leaves pictures there.
#include "Road.h"

#include "sim/SimulatedLine.h"
#include "widgets/IndicatorLight.h"

#include <QMutex>

#include <cstdio>

using namespace road;

namespace {

sim::UnitSettings firstUnit()
{
    sim::UnitSettings unit; // every option; 100 to 200 MHz in steps of 25 kHz
    unit.firmware = "KELDO-X REV 3.17";
    return unit;
}

sim::UnitSettings secondUnit()
{
    sim::UnitSettings unit;
    unit.optionA = sim::OptionAttenuator15;
    unit.optionC = 0;
    unit.hasBypass = false;
    unit.startMHz = 400;
    unit.channelSpacingHz = 12500;
    unit.maxStep = 1600;
    return unit;
}

} // namespace

class TestOperatorsRoad : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void startShowsTheMainWindowWithoutAChannel();
    void searchFindsBothUnitsAndConnectsTheFirst();
    void typedFrequencyTunesTheUnit();
    void sliderArrowMovesOneStep();
    void frequencyOutsideTheRangeIsRefusedAndNothingIsLost();
    void attenuationIsSetInTheChannelsWindow();
    void agcLocksTheAttenuation();
    void fineTuningIsTyped();
    void unlockedOscillatorTurnsTheLightRed();
    void refusedSettingAsksForThePassword();
    void selectingTheSecondChannelConnectsIt();
    void unitUnpluggedInMidReplyIsTold();
    void closingTheMainWindowEndsAWaitAtOnce();

private:
    void printExchange(const char *port, bool fromUnit, const std::string &line);

    std::unique_ptr<Fixture> m_fixture;
    std::shared_ptr<sim::SimulatedUnit> m_first;
    std::shared_ptr<sim::SimulatedUnit> m_second;
    std::unique_ptr<sim::SimulatedLine> m_firstLine;
    std::unique_ptr<sim::SimulatedLine> m_secondLine;
    QMutex m_printing;
};

void TestOperatorsRoad::initTestCase()
{
    m_fixture = std::make_unique<Fixture>();
    m_first = std::make_shared<sim::SimulatedUnit>(firstUnit());
    m_second = std::make_shared<sim::SimulatedUnit>(secondUnit());
    m_firstLine = std::make_unique<sim::SimulatedLine>();
    m_secondLine = std::make_unique<sim::SimulatedLine>();
    m_firstLine->addUnit(m_first);
    m_secondLine->addUnit(m_second);
    if (!pictureFolder().isEmpty()) {
        m_firstLine->setListener([this](bool fromUnit, const std::string &line) {
            printExchange("COM3", fromUnit, line);
        });
        m_secondLine->setListener([this](bool fromUnit, const std::string &line) {
            printExchange("COM7", fromUnit, line);
        });
    }
    m_fixture->plug(3, m_firstLine->device());
    m_fixture->plug(7, m_secondLine->device());
    startProgram();
}

void TestOperatorsRoad::cleanupTestCase()
{
    m_fixture.reset();
}

void TestOperatorsRoad::printExchange(const char *port, bool fromUnit, const std::string &line)
{
    const QMutexLocker lock(&m_printing);
    std::printf("%s %s %s\n", port, fromUnit ? "->" : "<-", line.c_str());
    std::fflush(stdout);
}

void TestOperatorsRoad::startShowsTheMainWindowWithoutAChannel()
{
    QVERIFY(window(mainName)->isVisible());
    QCOMPARE(mainText("lblCurrentChannel"), QStringLiteral("No active channel"));
    QVERIFY(!control<QLineEdit>(mainName, "txtCurrentFreq")->isEnabled());
    picture(mainName, "main-1-no-unit");
}

void TestOperatorsRoad::searchFindsBothUnitsAndConnectsTheFirst()
{
    window(mainName)->findChild<QAction *>(QStringLiteral("mnuConnectComport"))->trigger();
    QCOMPARE(int(app().foundUnits), 2);
    QVERIFY(app().searchFinished);
    QCOMPARE(activeChannel(), 1);
    QCOMPARE(mainText("lblCurrentChannel"), QStringLiteral("Active Channel 1"));
    QCOMPARE(mainText("lblChannelSpacing"), QStringLiteral(" 25 kHz frequency spacing"));
    QCOMPARE(control<QLineEdit>(mainName, "txtFreq_1")->text(), QStringLiteral("100 MHz"));
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("100"));
    QVERIFY(window(channelsName)->isVisible());
    picture(mainName, "main-2-connected");
    picture(channelsName, "channels-1-found");
}

void TestOperatorsRoad::typedFrequencyTunesTheUnit()
{
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("145.5"));
    QCOMPARE(m_first->step(), 1820);
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("145.5"));
    QCOMPARE(control<QScrollBar>(mainName, "HScroll1")->value(), 1820);
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanFreq_1")->text(), QStringLiteral("145.5"));
    QCOMPARE(mainText("StatusBar_2"), QStringLiteral("OK"));
    QCOMPARE(control<IndicatorLight>(mainName, "ShapeStatusLight")->fillColor(),
             IndicatorLight::green);
    picture(mainName, "main-3-tuned");
}

void TestOperatorsRoad::sliderArrowMovesOneStep()
{
    auto *slider = control<QScrollBar>(mainName, "HScroll1");
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Right);
    QCOMPARE(m_first->step(), 1821);
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("145.525"));
    QVERIFY(slider->isEnabled());
}

void TestOperatorsRoad::frequencyOutsideTheRangeIsRefusedAndNothingIsLost()
{
    m_fixture->boxes.expect(
        QStringLiteral("Cannot set the device to a frequency outside its range."));
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("200.001"));
    QCOMPARE(m_first->step(), 1821);
    QVERIFY(m_fixture->boxes.allShown());
    QVERIFY(app().guard().isUp());
}

void TestOperatorsRoad::attenuationIsSetInTheChannelsWindow()
{
    typeInto(control<QLineEdit>(channelsName, "txtChanAtten_1"), QStringLiteral("10.5"));
    QCOMPARE(m_first->attenuation(), 10.5);
    auto *arrows = control<QWidget>(channelsName, "udAtten_1");
    arrows->setFocus();
    QTest::keyClick(arrows, Qt::Key_Up);
    QCOMPARE(m_first->attenuation(), 11.0);
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanAtten_1")->text(), QStringLiteral("11"));
    picture(channelsName, "channels-2-level-set");
}

void TestOperatorsRoad::agcLocksTheAttenuation()
{
    auto *agc = control<QAbstractButton>(channelsName, "chkChanAGC_1");
    QTest::mouseClick(agc, Qt::LeftButton, {}, QPoint(8, agc->height() / 2));
    QVERIFY(m_first->agc());
    QVERIFY(!control<QLineEdit>(channelsName, "txtChanAtten_1")->isEnabled());
    QVERIFY(control<QLineEdit>(channelsName, "txtChanAGCoffset_1")->isEnabled());
    picture(channelsName, "channels-3-agc");
    QTest::mouseClick(agc, Qt::LeftButton, {}, QPoint(8, agc->height() / 2));
    QVERIFY(!m_first->agc());
    QCOMPARE(control<QLineEdit>(channelsName, "txtChanAtten_1")->text(), QStringLiteral("11"));
}

void TestOperatorsRoad::fineTuningIsTyped()
{
    typeInto(control<QLineEdit>(mainName, "txtPelltrim"), QStringLiteral("140"));
    QCOMPARE(m_first->fineTuning(), 140);
    QCOMPARE(control<QScrollBar>(mainName, "HScroll_Pelltrim")->value(), 140);
}

void TestOperatorsRoad::unlockedOscillatorTurnsTheLightRed()
{
    m_first->setUnlockedSteps(2000, 2000);
    m_fixture->boxes.expect(QStringLiteral("The device oscillator is unlocked!"));
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("150"));
    QCOMPARE(mainText("StatusBar_2"), QStringLiteral("VCO UNLOCKED"));
    QCOMPARE(control<IndicatorLight>(mainName, "ShapeStatusLight")->fillColor(),
             IndicatorLight::red);
    // The unit has moved all the same.
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("150"));
    picture(mainName, "main-4-unlocked");
}

void TestOperatorsRoad::refusedSettingAsksForThePassword()
{
    m_first->setPassword("secret");
    const Hand hand([](QWidget *box) {
        picture(box, "password-box");
        auto *entry = box->findChild<QLineEdit *>(QStringLiteral("Text1"));
        QTest::keyClicks(entry, QStringLiteral("secret"));
        QTest::keyClick(entry, Qt::Key_Return);
    });
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("120"));
    QVERIFY(hand.acted);
    QVERIFY(m_first->permitted());
    // The refused setting is not repeated; the next one goes through.
    QCOMPARE(m_first->step(), 2000);
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("120"));
    QCOMPARE(m_first->step(), 800);
}

void TestOperatorsRoad::selectingTheSecondChannelConnectsIt()
{
    auto *option = control<QAbstractButton>(channelsName, "optPortNum_2");
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
    QCOMPARE(mainText("lblCurrentChannel"), QStringLiteral("Active Channel 2"));
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("400"));
    QVERIFY(!control<QWidget>(mainName, "FramePelltrim")->isEnabled());
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("410.0125"));
    QCOMPARE(m_second->step(), 801);
    QCOMPARE(m_first->step(), 800); // the other channel stays where it was
    picture(mainName, "main-5-second-channel");
    picture(channelsName, "channels-4-second-channel");
}

void TestOperatorsRoad::unitUnpluggedInMidReplyIsTold()
{
    m_secondLine->setFault(sim::Fault::Unplug, "*STEP");
    m_fixture->boxes.expect(
        QStringLiteral("The device did not respond correctly to a 'current step' command."));
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("405"));
    QTRY_COMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    QVERIFY(!control<QLineEdit>(mainName, "txtCurrentFreq")->isEnabled());
    QCOMPARE(control<IndicatorLight>(mainName, "ShapeStatusLight")->fillColor(),
             IndicatorLight::red);
    picture(mainName, "main-6-unplugged");

    // The other channel is not lost.
    auto *option = control<QAbstractButton>(channelsName, "optPortNum_1");
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
    QCOMPARE(mainText("lblCurrentChannel"), QStringLiteral("Active Channel 1"));
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("120"));
}

void TestOperatorsRoad::closingTheMainWindowEndsAWaitAtOnce()
{
    m_firstLine->setFault(sim::Fault::Silence);
    QElapsedTimer sinceClose;
    QTimer::singleShot(200, this, [&] {
        sinceClose.start();
        window(mainName)->close();
    });
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("130"));
    QVERIFY(EventQueue::ending());
    QVERIFY(sinceClose.isValid());
    QVERIFY2(sinceClose.elapsed() < 200, qPrintable(QString::number(sinceClose.elapsed())));
}

KELDOX_TEST(TestOperatorsRoad)
#include "TestOperatorsRoad.moc"
