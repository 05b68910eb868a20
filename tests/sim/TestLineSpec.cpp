// The description of a line in words, and the line that is made from it.
#include "TerminalPeer.h"

#include "sim/LineSpec.h"

#include "support/TestMain.h"

#include <stdexcept>

using sim::Fault;
using sim::LineSpec;
using sim::parseLineSpec;

class TestLineSpec : public QObject
{
    Q_OBJECT

private slots:
    void everyNameReachesItsPlace();
    void descriptionStandsOnItsDefaults();
    void addressesFollowTheKind();
    void firmwareNumberBecomesARevision_data();
    void firmwareNumberBecomesARevision();
    void optionsCanBeLeftOut_data();
    void optionsCanBeLeftOut();
    void faultHasNameCommandAndTimes();
    void description();
    void badDescriptions_data();
    void badDescriptions();
    void madeLineAnswersAsDescribed();
    void madeLineHasItsFault();
};

void TestLineSpec::everyNameReachesItsPlace()
{
    const LineSpec spec = parseLineSpec(
        "kind=tovin-r,addresses=2+5,firmware=3.17,aopt=10,copt=6,password=a=b,start=70.5,if=45,"
        "spacing=12500,max-step=900,bandwidth=6000,max-atten=31.5,atten-step=0.1,com=7,paced,"
        "terminator=crlf,late-by=20",
        {});
    QCOMPARE(spec.unit.identity, std::string("TOVIN-R"));
    QCOMPARE(spec.addresses, (std::vector{2, 5}));
    QCOMPARE(spec.firmware, std::string("3.17"));
    QCOMPARE(spec.unit.optionA, 10);
    QCOMPARE(spec.unit.optionC, 6);
    QCOMPARE(spec.unit.password, std::string("a=b"));
    QCOMPARE(spec.unit.startMHz, 70.5);
    QCOMPARE(spec.unit.ifMHz, 45.0);
    QCOMPARE(spec.unit.channelSpacingHz, 12500);
    QCOMPARE(spec.unit.maxStep, 900);
    QCOMPARE(spec.unit.bandwidthHz, 6000);
    QCOMPARE(spec.unit.maxAttenuation, 31.5);
    QCOMPARE(spec.unit.attenuationStep, 0.1);
    QCOMPARE(spec.com, 7);
    QVERIFY(spec.paced);
    QCOMPARE(spec.terminator, std::string("\r\n"));
    QCOMPARE(spec.lateBy.count(), 20);
}

void TestLineSpec::descriptionStandsOnItsDefaults()
{
    LineSpec defaults;
    sim::setLineValue(defaults, "paced", "yes");
    sim::setLineValue(defaults, "start", "70");
    const LineSpec spec = parseLineSpec("paced=no,com=4", defaults);
    QVERIFY(!spec.paced);
    QCOMPARE(spec.unit.startMHz, 70.0);
    QCOMPARE(spec.com, 4);
}

void TestLineSpec::addressesFollowTheKind()
{
    QCOMPARE(LineSpec{}.unitAddresses(), std::vector{0});
    QCOMPARE(parseLineSpec("kind=tovin-r", {}).unitAddresses(), std::vector{1});
    QCOMPARE(parseLineSpec("addresses=3,kind=tovin-r", {}).unitAddresses(), std::vector{3});
}

void TestLineSpec::firmwareNumberBecomesARevision_data()
{
    QTest::addColumn<QByteArray>("firmware");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("none") << QByteArray() << QByteArray("KELDO-X REV 3.38");
    QTest::newRow("four characters") << QByteArray("2.27") << QByteArray("KELDO-X REV 2.27");
    QTest::newRow("three characters") << QByteArray("1.6") << QByteArray("KELDO-X REV  1.6");
    QTest::newRow("one character") << QByteArray("3") << QByteArray("KELDO-X REV    3");
    QTest::newRow("a text") << QByteArray("prototype 2.0") << QByteArray("prototype 2.0");
}

void TestLineSpec::firmwareNumberBecomesARevision()
{
    QFETCH(QByteArray, firmware);
    LineSpec spec;
    if (!firmware.isEmpty())
        sim::setLineValue(spec, "firmware", firmware.toStdString());
    QTEST(QByteArray::fromStdString(spec.firmwareText()), "text");
}

void TestLineSpec::optionsCanBeLeftOut_data()
{
    QTest::addColumn<QByteArray>("without");
    QTest::addColumn<int>("optionA");
    QTest::addColumn<int>("optionC");
    QTest::addColumn<bool>("bypass");
    QTest::newRow("agc") << QByteArray("agc") << 12 << 2 << true;
    QTest::newRow("atten, and so AGC") << QByteArray("atten") << 8 << 2 << true;
    QTest::newRow("input-atten") << QByteArray("input-atten") << 6 << 2 << true;
    QTest::newRow("bypass") << QByteArray("bypass") << 14 << 2 << false;
    QTest::newRow("pelltrim") << QByteArray("pelltrim") << 14 << 0 << true;
    QTest::newRow("all, by either sign")
        << QByteArray("agc+atten,input-atten+bypass,pelltrim") << 0 << 0 << false;
}

void TestLineSpec::optionsCanBeLeftOut()
{
    QFETCH(QByteArray, without);
    LineSpec spec;
    sim::setLineValue(spec, "without", without.toStdString());
    QTEST(spec.unit.optionA, "optionA");
    QTEST(spec.unit.optionC, "optionC");
    QTEST(spec.unit.hasBypass, "bypass");
}

void TestLineSpec::faultHasNameCommandAndTimes()
{
    LineSpec spec = parseLineSpec("fault=silence", {});
    QVERIFY(spec.fault == Fault::Silence);
    QCOMPARE(spec.faultPrefix, std::string());
    QCOMPARE(spec.faultTimes, -1);
    spec = parseLineSpec("fault=late-reply:*CHAN SPACE", {});
    QVERIFY(spec.fault == Fault::LateReply);
    QCOMPARE(spec.faultPrefix, std::string("*CHAN SPACE"));
    QCOMPARE(spec.faultTimes, -1);
    spec = parseLineSpec("fault=garbage::3", {});
    QCOMPARE(spec.faultPrefix, std::string());
    QCOMPARE(spec.faultTimes, 3);
}

void TestLineSpec::description()
{
    QCOMPARE(LineSpec{}.describe(), std::string("KELDO-X firmware 3.38"));
    QCOMPARE(parseLineSpec("kind=tovin-r,firmware=1.6", {}).describe(),
             std::string("TOVIN-R firmware 1.6 address 1"));
    QCOMPARE(parseLineSpec("kind=tovin-r,addresses=2+5,fault=echo", {}).describe(),
             std::string("TOVIN-R firmware 3.38 addresses 2 5, fault echo"));
}

void TestLineSpec::badDescriptions_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("named"); // what the message must name
    const auto row = [](const char *text, const char *named) {
        QTest::newRow(text) << QByteArray(text) << QByteArray(named);
    };
    row("", "name=value");
    row("kind", "name=value");
    row("colour=red", "colour");
    row("kind=Keldo", "Keldo");
    row("addresses=0", "addresses");
    row("addresses=100", "addresses");
    row("addresses=2+", "addresses");
    row("addresses=2+2", "twice");
    row("addresses=1+2+3+4+5+6+7+8+9", "eight");
    row("firmware=3.375", "four characters");
    row("firmware=", "firmware");
    row("without=wheels", "wheels");
    row("paced=often", "often");
    row("terminator=lf", "lf");
    row("fault=laziness", "laziness");
    row("fault=silence:*ID?:0", "times");
    row("fault=silence:*ID?:x", "times");
    row("fault=silence:*ID?:1:2", "name:command:times");
    row("start=x", "start");
    row("start=-1", "start");
    row("spacing=0", "spacing");
    row("spacing=0.5", "spacing");
    row("max-step=1.5", "whole number");
    row("com=0", "com");
    row("com=256", "com");
    row("aopt=256", "aopt");
}

void TestLineSpec::badDescriptions()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, named);
    try {
        parseLineSpec(text.toStdString(), {});
        QFAIL("accepted");
    } catch (const std::invalid_argument &error) {
        QVERIFY2(QByteArray(error.what()).contains(named), error.what());
    }
}

void TestLineSpec::madeLineAnswersAsDescribed()
{
    const auto line = sim::makeLine(
        parseLineSpec("kind=tovin-r,addresses=2+5,firmware=2.25,password=pw,start=70", {}));
    TerminalPeer peer(line->device());
    for (const char *const listen : {">LISTEN02", ">LISTEN05"}) {
        peer.exchange(">UNLISTEN");
        QCOMPARE(peer.exchange(listen), std::string("LISTENING\r"));
        QCOMPARE(peer.exchange("*ID?"), std::string("TOVIN-R\r"));
        QCOMPARE(peer.exchange("*REVISION?"), std::string("TOVIN-R REV 2.25\r"));
        QCOMPARE(peer.exchange("*START FREQ?"), std::string("70 MHz\r"));
        QCOMPARE(peer.exchange("*STEP 1"), std::string("PERMISSION DENIED\r"));
    }
}

void TestLineSpec::madeLineHasItsFault()
{
    const auto line = sim::makeLine(parseLineSpec("fault=empty-reply:*ID:1,terminator=crlf", {}));
    TerminalPeer peer(line->device());
    peer.write("*STEP?\r*ID?\r*ID?\r");
    const std::string expected("0\r\n\r\nKELDO-X\r\n");
    QCOMPARE(peer.read(expected.size(), std::chrono::seconds(5)), expected);
}

KELDOX_TEST(TestLineSpec)
#include "TestLineSpec.moc"
