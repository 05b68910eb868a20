// A device that is pulled out, at any time, and what comes back under its name.
#include "FaultBench.h"
#include "StuckUnit.h"

using namespace faults;

namespace {

sim::UnitSettings otherUnit()
{
    sim::UnitSettings unit;
    unit.startMHz = 400;
    unit.channelSpacingHz = 12500;
    unit.maxStep = 1600;
    unit.step = 80;
    unit.attenuation = 7;
    return unit;
}

} // namespace

class TestHangUp : public QObject
{
    Q_OBJECT

private slots:
    void whileIdle();
    void inMidCommand();
    void withBytesUnsent();
    void replugged();
    void anotherUnitUnderTheOldName();
};

void TestHangUp::whileIdle()
{
    FaultBench bench;
    auto &line = bench.plug(5);
    search();
    tune(QStringLiteral("145.5"));
    seesConnected(5);
    line.clearCommands();
    bench.boxes().expectStart(QStringLiteral("Error 8020"));
    line.unplug();
    QTRY_COMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    seesNotConnected();
    QTRY_VERIFY(bench.boxes().allShown()); // told once
    const QString told = bench.boxes().texts().value(0);
    QVERIFY2(told.contains(QStringLiteral("COM5")) &&
                 told.contains(QStringLiteral("was disconnected.")),
             qPrintable(told));
    // What the operator does now reaches no line and raises no box.
    QTest::keyClick(control<QWidget>(mainName, "HScroll1"), Qt::Key_Right);
    QTest::mouseDClick(box(mainName, "txtCurrentFreq"), Qt::LeftButton);
    readAgain();
    QVERIFY(line.commands().empty());
    seesNotConnected();
}

void TestHangUp::inMidCommand()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    line.clearCommands();
    line.setFault(sim::Fault::Unplug, "*STEP");
    bench.boxes().expect(
        QStringLiteral("The device did not respond correctly to a 'current step' command."));
    tune(QStringLiteral("130"));
    QTRY_COMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    seesNotConnected();
    QCOMPARE(sent(line), QStringList{QStringLiteral("*STEP 1200")}); // once, and nothing after it
    QCOMPARE(bench.boxes().shown().size(), 1);
}

void TestHangUp::withBytesUnsent()
{
    FaultBench bench;
    StuckUnit stuck;
    bench.fixture.plug(5, stuck.terminal.device());
    search();
    seesConnected(5);
    stuck.stick();
    bench.boxes().expect(
        QStringLiteral("The device did not respond correctly to a 'current step' command."));
    QTimer::singleShot(100, &stuck, [&] { stuck.terminal.hangUp(); });
    tune(QStringLiteral("130"));
    seesNotConnected();
    QVERIFY(stuck.received.find("*STEP 1200") == std::string::npos);
    // It is not sent to whoever comes next either.
    auto &next = bench.plug(5);
    choose(1);
    seesConnected(5);
    QCOMPARE(sent(next).first(), QStringLiteral("*ID?"));
    QVERIFY(!sent(next).contains(QStringLiteral("*STEP 1200")));
    QCOMPARE(frequency(), QStringLiteral("100"));
}

void TestHangUp::replugged()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    bench.plug(5, unit);
    search();
    tune(QStringLiteral("145.5"));
    bench.boxes().expectStart(QStringLiteral("Error 8020"));
    bench.line(5).unplug();
    QTRY_VERIFY(bench.boxes().allShown());
    seesNotConnected();
    unit->answer("*STEP 300"); // its front panel, meanwhile
    unit->answer("*ATTN 12");
    auto &line = bench.plug(5, unit);
    choose(1);
    seesConnected(5);
    QCOMPARE(frequency(), QStringLiteral("107.5"));
    QCOMPARE(box(channelsName, "txtChanAtten_1")->text(), QStringLiteral("12"));
    QCOMPARE(light(), QColor(IndicatorLight::green));
    // Read in anew, and left where it is.
    const QStringList commands = sent(line);
    QCOMPARE(commands.first(), QStringLiteral("*ID?"));
    QVERIFY(commands.contains(QStringLiteral("*START FREQ?")));
    QVERIFY(commands.filter(QStringLiteral("*STEP ")).isEmpty());
    QCOMPARE(unit->step(), 300);
    tune(QStringLiteral("110"));
    QCOMPARE(unit->step(), 400);
}

void TestHangUp::anotherUnitUnderTheOldName()
{
    FaultBench bench;
    bench.plug(5);
    search();
    tune(QStringLiteral("145.5"));
    bench.boxes().expectStart(QStringLiteral("Error 8020"));
    bench.line(5).unplug();
    QTRY_VERIFY(bench.boxes().allShown());
    const auto other = std::make_shared<sim::SimulatedUnit>(otherUnit());
    bench.plug(5, other);
    choose(1);
    seesConnected(5);
    // Nothing of the first one is taken for the second.
    QCOMPARE(frequency(), QStringLiteral("401"));
    QCOMPARE(mainText("lblChannelSpacing"), QStringLiteral(" 12.5 kHz frequency spacing"));
    QCOMPARE(box(mainName, "txtFreq_1")->text(), QStringLiteral("400 MHz"));
    QCOMPARE(box(channelsName, "txtChanAtten_1")->text(), QStringLiteral("7"));
    QCOMPARE(control<QScrollBar>(mainName, "HScroll1")->maximum(), 1600);
    QCOMPARE(control<QScrollBar>(mainName, "HScroll1")->value(), 80);
    QCOMPARE(other->step(), 80);
    bench.boxes().expect(QStringLiteral("Cannot set the device to a frequency outside its range."));
    tune(QStringLiteral("145.5"));
    QCOMPARE(other->step(), 80);
}

KELDOX_TEST(TestHangUp)
#include "TestHangUp.moc"
