// A reply that should hold a number and holds none, for every query of a connection: a display
// shows the truth or nothing, and the next connection puts everything right.
#include "FaultBench.h"

using namespace faults;

namespace {

sim::UnitSettings knownUnit()
{
    sim::UnitSettings unit;
    unit.firmware = "KELDO-X REV 3.17";
    unit.step = 400; // 110 MHz
    unit.attenuation = 12;
    unit.inputAttenuation = 3;
    unit.agcOffset = -4;
    unit.fineTuning = 140;
    unit.fineCalibration = 130;
    return unit;
}

struct Shown
{
    const char *window;
    const char *box;
    const char *truth;
};

const QList<Shown> &displays()
{
    static const QList<Shown> all = {
        {mainName, "txtCurrentFreq", "110"},    {mainName, "txtFreq_1", "100 MHz"},
        {mainName, "txtFreq_2", "150 MHz"},     {mainName, "txtFreq_3", "200 MHz"},
        {mainName, "txtPelltrim", "140"},       {channelsName, "txtChanFreq_1", "110"},
        {channelsName, "txtChanAtten_1", "12"}, {channelsName, "txtChanInputAtten_1", "3"},
    };
    return all;
}

// What is not true, or nothing.
QStringList untruths()
{
    QStringList all;
    for (const Shown &shown : displays()) {
        const QString text = box(shown.window, shown.box)->text();
        if (!text.isEmpty() && text != QLatin1String(shown.truth))
            all.append(QStringLiteral("%1 shows %2").arg(QLatin1String(shown.box), text));
    }
    // A spacing that is not known stands as 0.
    static const QStringList captions = {QString(), QStringLiteral(" 0 kHz frequency spacing"),
                                         QStringLiteral(" 25 kHz frequency spacing")};
    if (!captions.contains(mainText("lblChannelSpacing")))
        all.append(mainText("lblChannelSpacing"));
    return all;
}

// No reply to a query whose number stands before this word, or alone.
QList<QByteArray> malformed(const QByteArray &word)
{
    if (word.isEmpty())
        return {"", "abc", "-", "..", "--1", "1.2.3", "+-5", "1,5", "12 MHz", "\xff\x80"};
    const QByteArray small = word.toLower();
    const QByteArray otherCase = "12" + (small == word ? word.toUpper() : small);
    return {"",        "abc",     "-", "12", "1.2.3", "12" + word.chopped(1), "12" + word + "!",
            otherCase, "\xff\x80"};
}

} // namespace

class TestBadNumbers : public QObject
{
    Q_OBJECT

private slots:
    void everyNumericQuery_data();
    void everyNumericQuery();
};

void TestBadNumbers::everyNumericQuery_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("word"); // after the number
    const QList<QPair<const char *, const char *>> queries = {
        {"*START FREQ?", " MHz"},
        {"*CHAN SPACE?", " Hz"},
        {"*MAX STEP?", ""},
        {"*IFRQ?", " MHz"},
        {"*BNDW?", ""},
        {"*STEP?", ""},
        {"*AOPT?", ""},
        {"*BOPT?", ""},
        {"*BYP_?", ""},
        {"*AGC_?", ""},
        {"*ATTN?", " dB"},
        {"*MXAT?", ""},
        {"*ATT STEP? ", " dB steps"},
        {"INPUT ATTN?", " dB"},
        {"*AOFF?", " dB"},
        {"*ACT_?", ""},
        {"*ZNSE?", " clicks"},
        {"*ZNCA?", " clicks"},
        {"*ZNCM?", ""},
    };
    for (const auto &[command, word] : queries)
        QTest::addRow("%s", command) << QByteArray(command) << QByteArray(word);
}

void TestBadNumbers::everyNumericQuery()
{
    QFETCH(const QByteArray, command);
    QFETCH(const QByteArray, word);
    MemoryBench bench(knownUnit());
    TestHooks::shortenTimers(1);
    TestHooks::settleWithin(1);
    QByteArray bad;
    int asked = 0;
    bench.change = [&](const QByteArray &sent, const QByteArray &reply) {
        if (sent != command)
            return QList<QByteArray>{reply};
        ++asked;
        return QList<QByteArray>{bad + '\r'};
    };
    bench.fixture.boxes.acceptAll();
    bool first = true;
    const bool isSwitch = QList<QByteArray>{"*AGC_?", "*ACT_?", "*ZNCM?"}.contains(command);
    for (const QByteArray &reply : malformed(word)) {
        if (isSwitch && reply.startsWith('1'))
            continue; // its first character tells
        bad = reply;
        if (std::exchange(first, false))
            search();
        else
            choose(1);
        QVERIFY(asked > 0);
        const QStringList wrong = untruths();
        QVERIFY2(wrong.isEmpty(), qPrintable(QString::fromLatin1(bad) + QStringLiteral(": ") +
                                             wrong.join(QStringLiteral(", "))));
        QVERIFY(app().guard().isUp());
    }
    for (const QString &told : bench.fixture.boxes.texts())
        QVERIFY2(told.startsWith(QStringLiteral("The device did not respond correctly")),
                 qPrintable(told));
    QVERIFY(bench.commands.filter(QStringLiteral("*STEP ")).isEmpty());
    bench.change = {};
    bench.fixture.boxes.clear();
    choose(1); // and no box follows
    seesConnected(5);
    for (const Shown &shown : displays())
        QCOMPARE(box(shown.window, shown.box)->text(), QString::fromLatin1(shown.truth));
    tune(QStringLiteral("145.5"));
    QCOMPARE(bench.unit.step(), 1820);
}

KELDOX_TEST(TestBadNumbers)
#include "TestBadNumbers.moc"
