// Reading values with the console tool: each good, missing from a unit, answered badly, and of a
// unit that is silent or goes away.
#include "CtlBench.h"

class TestCtlGet : public QObject
{
    Q_OBJECT

private slots:
    void everyValue_data();
    void everyValue();
    void severalValuesInTheirOrder();
    void allThatAUnitHas();
    void allAsJson();
    void theAttenuationIsTheAGCsWhileItIsOn();
    void whatAUnitDoesNotHave_data();
    void whatAUnitDoesNotHave();
    void onlyWhatIsNeededIsAsked();
    void anUnlockedOscillatorIsAnAnswer();
    void aBadReplyIsNamedAndTheOthersAreRead();
    void halfAReplyIsNone();
    void aSilentUnit();
    void aUnitThatFallsSilent();
    void somethingElseOnThePort();
    void aUnitThatIsUnplugged();
    void bothSidesOfTheWire();
    void controlCharactersStayOutOfTheTerminal();
};

void TestCtlGet::everyValue_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QJsonValue>("value");
    const auto row = [](const char *name, const char *text, const QJsonValue &value) {
        QTest::newRow(name) << QByteArray(name) << QByteArray(text) << value;
    };
    row("frequency", "146.5 MHz", 146.5);
    row("step", "1860", 1860);
    row("lock", "locked", true);
    row("attenuation", "10.5 dB", 10.5);
    row("agc", "off", false);
    row("agc-offset", "-3 dB", -3);
    row("input-attenuation", "3 dB", 3);
    row("bypass", "on", true);
    row("pelltrim", "140 clicks", 140);
    row("calibrated", "on", true);
    row("pelltrim-calibration", "131 clicks", 131);
    row("identity", "KELDO-X", QStringLiteral("KELDO-X"));
    row("revision", "KELDO-X REV 3.17", QStringLiteral("KELDO-X REV 3.17"));
    row("range", "100 to 200 MHz", QJsonArray{100, 200});
    row("start", "100 MHz", 100);
    row("center", "150 MHz", 150);
    row("stop", "200 MHz", 200);
    row("spacing", "25000 Hz", 25000);
    row("max-step", "4000", 4000);
    row("bandwidth", "30000 Hz", 30000);
    row("if", "21 MHz", 21);
    row("max-attenuation", "50 dB", 50);
    row("attenuation-step", "0.5 dB", 0.5);
}

// A unit that has everything but the input limiting, which came later than the AGC offset went.
static sim::UnitSettings fullUnit()
{
    sim::UnitSettings settings;
    settings.firmware = "KELDO-X REV 3.17";
    settings.step = 1860;
    settings.attenuation = 10.5;
    settings.agcOffset = -3;
    settings.inputAttenuation = 3;
    settings.bypass = true;
    settings.fineTuning = 140;
    settings.fineCalibration = 131;
    settings.calibratedMode = true;
    settings.bandwidthHz = 30000;
    return settings;
}

void TestCtlGet::everyValue()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, text);
    QFETCH(QJsonValue, value);
    const CtlBench bench(fullUnit());
    const QByteArray command = "get " + name;
    CTL_COMPARE(CtlBench::onUnit(command.constData()), 0, name + ' ' + text + '\n');
    const Outcome json = CtlBench::onUnit((command + " --json").constData());
    QCOMPARE(json.code, 0);
    QCOMPARE(json.json().object(), (QJsonObject{{QString::fromUtf8(name), value}}));
}

void TestCtlGet::severalValuesInTheirOrder()
{
    const CtlBench bench(fullUnit());
    CTL_COMPARE(CtlBench::onUnit("get agc frequency lock"), 0,
                "agc off\nfrequency 146.5 MHz\nlock locked\n");
}

void TestCtlGet::allThatAUnitHas()
{
    const CtlBench bench;
    const Outcome outcome = CtlBench::onUnit("get");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.lines().first(), QStringLiteral("frequency 100 MHz"));
    QVERIFY(outcome.lines().contains(QStringLiteral("limiting nominal")));
    QVERIFY(!outcome.out.contains(QStringLiteral("agc-offset")));
    QVERIFY(outcome.err.isEmpty());
}

void TestCtlGet::allAsJson()
{
    const CtlBench bench;
    const QJsonObject values = CtlBench::onUnit("get --json").json().object();
    QCOMPARE(values[QStringLiteral("frequency")], QJsonValue(100));
    QCOMPARE(values[QStringLiteral("limiting")], QJsonValue(QStringLiteral("nominal")));
    QCOMPARE(values.size(), CtlBench::onUnit("get").lines().size());
}

void TestCtlGet::theAttenuationIsTheAGCsWhileItIsOn()
{
    const CtlBench bench;
    bench.unit->setAgc(true);
    const Outcome all = CtlBench::onUnit("get");
    QCOMPARE(all.code, 0);
    QVERIFY(all.lines().contains(QStringLiteral("agc on")));
    QVERIFY(!all.out.contains(QStringLiteral("\nattenuation ")));
    const Outcome one = CtlBench::onUnit("get attenuation");
    CTL_COMPARE(one, 1, "");
    QVERIFY2(one.err.contains(QStringLiteral("This is normal if AGC is on.")), qPrintable(one.err));
}

void TestCtlGet::whatAUnitDoesNotHave_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"attenuation", "agc", "agc-offset", "input-attenuation", "bypass",
                             "limiting", "pelltrim", "calibrated", "bandwidth"})
        QTest::newRow(name) << QByteArray(name);
}

void TestCtlGet::whatAUnitDoesNotHave()
{
    QFETCH(QByteArray, name);
    sim::UnitSettings settings;
    settings.firmware = "KELDO-X REV 1.50";
    settings.optionA = settings.optionC = 0;
    settings.hasBypass = false;
    const CtlBench bench(settings);
    const Outcome outcome = CtlBench::onUnit(("get " + name).constData());
    CTL_COMPARE(outcome, 1, "");
    QCOMPARE(outcome.err.toUtf8(), "keldo-x-ctl: This unit has no " + name + ".\n");
}

void TestCtlGet::onlyWhatIsNeededIsAsked()
{
    const CtlBench bench;
    QCOMPARE(CtlBench::onUnit("get lock").code, 0);
    QCOMPARE(bench.commands(), (QStringList{QStringLiteral("*ID?"), QStringLiteral("*LOCK?")}));
}

void TestCtlGet::anUnlockedOscillatorIsAnAnswer()
{
    const CtlBench bench;
    bench.unit->setUnlockedSteps(0, 10);
    const Outcome outcome = CtlBench::onUnit("get lock");
    CTL_COMPARE(outcome, 0, "lock unlocked\n");
    QVERIFY(outcome.err.isEmpty());
    QCOMPARE(CtlBench::onUnit("get lock --json").json()[QStringLiteral("lock")], QJsonValue(false));
}

void TestCtlGet::aBadReplyIsNamedAndTheOthersAreRead()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Garbage, "*AGC_?");
    const Outcome outcome = CtlBench::onUnit("get agc frequency");
    CTL_COMPARE(outcome, 1, "frequency 100 MHz\n");
    QVERIFY2(outcome.err.startsWith(QStringLiteral(
                 "keldo-x-ctl: The device did not respond correctly to an AGC query. It answered")),
             qPrintable(outcome.err));
    const Outcome json = CtlBench::onUnit("get agc frequency --json");
    QCOMPARE(json.code, 1);
    QCOMPARE(json.json().object(), (QJsonObject{{QStringLiteral("frequency"), 100}}));
}

void TestCtlGet::halfAReplyIsNone()
{
    CtlBench bench;
    bench.line.setTerminator("");
    const Outcome outcome = CtlBench::onUnit("get lock");
    CTL_COMPARE(outcome, 1, "");
    QCOMPARE(outcome.err,
             QStringLiteral("keldo-x-ctl: The device did not respond correctly to an ID query. It "
                            "answered \"KELDO-X\" and no line's end.\n"));
    const Outcome wire = CtlBench::onUnit("get lock --verbose");
    QVERIFY2(wire.err.contains(QStringLiteral("COM7 < KELDO-X (cut off)\n")), qPrintable(wire.err));
}

void TestCtlGet::aSilentUnit()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Silence);
    QElapsedTimer clock;
    clock.start();
    const Outcome outcome = CtlBench::onUnit("get");
    CTL_COMPARE(outcome, 4, "");
    QVERIFY(clock.elapsed() < 5000);
    QVERIFY2(outcome.err.startsWith(QStringLiteral("keldo-x-ctl: No answer from COM7 (")),
             qPrintable(outcome.err));
    QVERIFY(outcome.err.contains(QStringLiteral("within 0.5 s.")));
    QCOMPARE(bench.commands(), QStringList{QStringLiteral("*ID?")});
}

// One time-out, not one for each command that is still to come.
void TestCtlGet::aUnitThatFallsSilent()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Silence, "*START");
    const Outcome outcome = CtlBench::onUnit("get frequency agc --json");
    CTL_COMPARE(outcome, 4, "{}\n");
    QCOMPARE(bench.commands().last(), QStringLiteral("*START FREQ?"));
}

void TestCtlGet::somethingElseOnThePort()
{
    CtlBench bench;
    bench.line.setResponder([](const std::string &) { return std::string("NMEA 4711"); });
    const Outcome outcome = CtlBench::onUnit("get lock");
    CTL_COMPARE(outcome, 1, "");
    QVERIFY2(outcome.err.contains(QStringLiteral("is no KELDO-X. It answered \"NMEA 4711\".")),
             qPrintable(outcome.err));
    QCOMPARE(bench.commands(), QStringList{QStringLiteral("*ID?")});
}

void TestCtlGet::aUnitThatIsUnplugged()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Unplug, "*STEP?");
    const Outcome outcome = CtlBench::onUnit("get lock frequency agc");
    CTL_COMPARE(outcome, 3, "lock locked\n");
    QVERIFY2(outcome.err.contains(QStringLiteral("is gone")), qPrintable(outcome.err));
}

void TestCtlGet::bothSidesOfTheWire()
{
    CtlBench bench;
    const Outcome outcome = CtlBench::onUnit("get lock --verbose");
    CTL_COMPARE(outcome, 0, "lock locked\n");
    QCOMPARE(outcome.err, QStringLiteral("COM7 > *ID?\nCOM7 < KELDO-X\nCOM7 > *LOCK?\n"
                                         "COM7 < LOCKED\n"));
    bench.line.setFault(sim::Fault::Silence, "*LOCK?");
    const Outcome silent = CtlBench::onUnit("get lock --verbose");
    QVERIFY2(silent.err.contains(QStringLiteral("COM7 > *LOCK?\n")) &&
                 silent.err.contains(QStringLiteral("COM7 < (no answer)\n")),
             qPrintable(silent.err));
}

void TestCtlGet::controlCharactersStayOutOfTheTerminal()
{
    CtlBench bench;
    bench.line.setResponder([](const std::string &) { return std::string("\x1b[31mKELDO\a"); });
    const Outcome outcome = CtlBench::onUnit("get lock --verbose");
    QCOMPARE(outcome.code, 1);
    QVERIFY2(!outcome.err.contains(QLatin1Char('\x1b')) && !outcome.err.contains(QLatin1Char('\a')),
             qPrintable(outcome.err));
    QVERIFY(outcome.err.contains(QStringLiteral("COM7 < \\1b[31mKELDO\\07\n")));
}

KELDOX_TEST(TestCtlGet)
#include "TestCtlGet.moc"
