// Bytes that no unit sends, or not like this: in crumbs, in heaps, stale, echoed, binary, markup
// and one in a hundred another.
#include "FaultBench.h"

#include "core/TextNumbers.h"
#include "ui/monitor/frmIODaemon.h"

#include <QPlainTextEdit>

#include <cmath>
#include <random>

using namespace faults;

namespace {

const auto noStepReply =
    QStringLiteral("The device did not respond correctly to a 'current step' command.");

frmIODaemon *monitor()
{
    return qobject_cast<frmIODaemon *>(window(monitorName));
}

void showMonitor()
{
    trigger(mainName, "mnuOptionsIOdaemon");
    QVERIFY(monitor()->isVisible());
}

QList<QByteArray> inPieces(const QByteArray &bytes, qsizetype size)
{
    QList<QByteArray> pieces;
    for (qsizetype at = 0; at < bytes.size(); at += size)
        pieces.append(bytes.mid(at, size));
    return pieces;
}

// What a unit in good order shows after it was tuned to 145.5 MHz.
void seesTuned(const sim::SimulatedUnit &unit)
{
    seesConnected(5);
    QCOMPARE(unit.step(), 1820);
    QCOMPARE(frequency(), QStringLiteral("145.5"));
    QCOMPARE(description(mainName, "txtCurrentFreq"), QString());
    QCOMPARE(box(channelsName, "txtChanFreq_1")->text(), QStringLiteral("145.5"));
    QCOMPARE(box(mainName, "txtFreq_1")->text(), QStringLiteral("100 MHz"));
    QCOMPARE(box(mainName, "txtFreq_3")->text(), QStringLiteral("200 MHz"));
    QCOMPARE(box(channelsName, "txtChanAtten_1")->text(), QStringLiteral("0"));
    QCOMPARE(control<QScrollBar>(mainName, "HScroll1")->value(), 1820);
    QCOMPARE(light(), QColor(IndicatorLight::green));
}

} // namespace

class TestBadBytes : public QObject
{
    Q_OBJECT

private slots:
    void oneByteAtATime();
    void fiftyRepliesAtOnce();
    void twoRepliesAtOnceAreNoNumber();
    void staleBytesAtOpening();
    void echoedBytesAtOpening();
    void binary();
    void markup();
    void oneByteInAHundredCorrupted();
};

void TestBadBytes::oneByteAtATime()
{
    MemoryBench bench;
    bench.line->pours = true;
    bench.change = [](const QByteArray &, const QByteArray &reply) { return inPieces(reply, 1); };
    search();
    tune(QStringLiteral("145.5"));
    seesTuned(bench.unit);
}

// Which of them is the answer nobody knows: it is a bad reply, and nothing of it answers what is
// asked later.
void TestBadBytes::fiftyRepliesAtOnce()
{
    MemoryBench bench;
    search();
    tune(QStringLiteral("145.5"));
    bool flooded = false;
    bench.change = [&](const QByteArray &, const QByteArray &reply) {
        return QList<QByteArray>{flooded ? reply + reply.repeated(49) : reply};
    };
    const StallMeter stall("fifty replies at once");
    flooded = true;
    bench.fixture.boxes.expect(noStepReply);
    tune(QStringLiteral("130"));
    QCOMPARE(description(mainName, "txtCurrentFreq"), QStringLiteral("unconfirmed"));
    QCOMPARE(frequency(), QStringLiteral("145.5"));
    flooded = false;
    readAgain();
    QCOMPARE(frequency(), QStringLiteral("130"));
    flooded = true;
    bench.fixture.boxes.acceptAll();
    readAgain();
    QCOMPARE(frequency(), QStringLiteral("130"));
    flooded = false;
    tune(QStringLiteral("145.5"));
    readAgain();
    seesTuned(bench.unit);
}

// "100 MHz" twice is not 100100 MHz.
void TestBadBytes::twoRepliesAtOnceAreNoNumber()
{
    MemoryBench bench;
    bench.change = [](const QByteArray &command, const QByteArray &reply) {
        return QList<QByteArray>{command == "*START FREQ?" ? reply + reply : reply};
    };
    bench.fixture.boxes.acceptAll();
    search();
    for (const QString &told : bench.fixture.boxes.texts())
        QVERIFY2(told.contains(QStringLiteral("'start frequency' query")), qPrintable(told));
    QVERIFY(!bench.fixture.boxes.texts().isEmpty());
    QCOMPARE(frequency(), QString());
    QCOMPARE(box(mainName, "txtFreq_1")->text(), QString());
    QVERIFY(!control<QWidget>(mainName, "HScroll1")->isEnabled());
    bench.change = {};
    choose(1);
    seesConnected(5);
    QCOMPARE(frequency(), QStringLiteral("100"));
}

void TestBadBytes::staleBytesAtOpening()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    line.send("LOCKED\r7 MHz\r99 Hz\r1");
    search();
    line.clearCommands();
    tune(QStringLiteral("145.5"));
    seesTuned(*unit);
    QCOMPARE(sent(line), QStringList{QStringLiteral("*STEP 1820")});
    // And before an opening by the operator.
    line.send("LOCKED\r7 MHz\r99 Hz\r1");
    choose(1);
    seesTuned(*unit);
}

// A line that brings back what it is sent, units' answers or not, is no unit's.
void TestBadBytes::echoedBytesAtOpening()
{
    FaultBench bench;
    auto &line = bench.plug(5);
    line.setFault(sim::Fault::Echo);
    bench.boxes().expectStart(QStringLiteral("Check data and power connections"));
    search();
    seesNotConnected();
    QVERIFY(monitor()->displayText().contains(QStringLiteral("FOUND A LOOPBACK ADAPTOR")));
    QCOMPARE(sent(line), QStringList{QStringLiteral("*ID?")}); // nothing else is tried on it
    line.setResponder([](const std::string &command) { return command + "\rKELDO-X"; });
    line.setFault(sim::Fault::None);
    bench.boxes().expectStart(QStringLiteral("Check data and power connections"));
    search();
    seesNotConnected();
    QCOMPARE(int(app().foundUnits), 0);
    bench.plug(5);
    search();
    seesConnected(5);
}

void TestBadBytes::binary()
{
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    tune(QStringLiteral("145.5"));
    showMonitor();
    line.setFault(sim::Fault::Binary, "*STEP ", 1);
    bench.boxes().expect(noStepReply);
    tune(QStringLiteral("130"));
    QCOMPARE(description(mainName, "txtCurrentFreq"), QStringLiteral("unconfirmed"));
    QCOMPARE(box(channelsName, "txtChanFreq_1")->text(), QStringLiteral("145.5"));
    // In the name of a unit it is no unit.
    line.setFault(sim::Fault::Binary, "*ID?");
    bench.boxes().expect(QStringLiteral("The device did not respond correctly to an ID query."));
    choose(1);
    seesNotConnected();
    line.setFault(sim::Fault::None);
    choose(1);
    tune(QStringLiteral("145.5"));
    seesTuned(*unit);
}

// Shown as it came, wherever it is shown, and never drawn.
void TestBadBytes::markup()
{
    const QString bold = QStringLiteral("<b>bold</b><img src='x'>");
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    auto &line = bench.plug(5, unit);
    search();
    showMonitor();
    line.setResponder([unit, bold](const std::string &command) {
        const auto reply = unit->answer(command);
        return command.rfind("*ATTN ", 0) == 0 ? bold.toStdString() : reply;
    });
    bench.boxes().expectStart(QStringLiteral("The device did not respond correctly"));
    typeInto(box(channelsName, "txtChanAtten_1"), QStringLiteral("10"));
    QCOMPARE(unit->attenuation(), 10.0);
    QCOMPARE(description(channelsName, "txtChanAtten_1"), QStringLiteral("unconfirmed"));
    QVERIFY(monitor()->displayText().contains(QStringLiteral(" received ") + bold));
    const auto *text = monitor()->findChild<QPlainTextEdit *>(QStringLiteral("Text1"));
    QTRY_VERIFY(text->toPlainText().contains(QStringLiteral(" received ") + bold));
    line.setResponder([unit](const std::string &command) { return unit->answer(command); });
    readAgain();
    QCOMPARE(box(channelsName, "txtChanAtten_1")->text(), QStringLiteral("10"));
    seesConnected(5);
}

// Whatever is shown lies on a plan that was told, and afterwards everything is right again.
void TestBadBytes::oneByteInAHundredCorrupted()
{
    std::mt19937 random(5);
    MemoryBench bench;
    search();
    bench.fixture.boxes.acceptAll();
    TestHooks::shortenTimers(1);
    TestHooks::settleWithin(1);
    QSet<double> steps{0}; // that were sent, or told by a reply whatever it was made into
    int corrupted = 0;
    bench.change = [&](const QByteArray &command, QByteArray reply) {
        for (char &byte : reply)
            if (random() % 100 == 0) {
                byte = static_cast<char>(random());
                ++corrupted;
            }
        const QString number = clsKeldoX::ParseData(QString::fromLatin1(reply.chopped(1)));
        if (command == "*STEP?")
            steps.insert(leadingNumber(number));
        return QList<QByteArray>{reply};
    };
    for (int turn = 0; turn < 300; ++turn) {
        const int step = static_cast<int>(random() % 4001);
        steps.insert(step);
        tune(QString::number(100 + step * 0.025, 'g', 10));
        if (turn % 3 == 0)
            readAgain();
        if (turn % 5 == 0)
            control<QCheckBox>(channelsName, "chkChanAGC_1")->click();
        const QString shown = box(channelsName, "txtChanFreq_1")->text();
        const double at = (shown.toDouble() - 100) / 0.025;
        QVERIFY2(steps.contains(std::nearbyint(at)) && std::abs(at - std::nearbyint(at)) < 1e-6,
                 qPrintable(shown));
        QVERIFY(app().guard().isUp());
    }
    QVERIFY(corrupted > 50);
    bench.change = {};
    bench.unit.change([](sim::UnitSettings &settings) { settings.agc = false; });
    bench.fixture.boxes.clear();
    readAgain();
    tune(QStringLiteral("145.5"));
    readAgain();
    seesTuned(bench.unit);
}

KELDOX_TEST(TestBadBytes)
#include "TestBadBytes.moc"
