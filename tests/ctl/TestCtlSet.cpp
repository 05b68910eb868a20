// Setting values with the console tool: what the unit confirmed is printed, and nothing else.
#include "CtlBench.h"

class TestCtlSet : public QObject
{
    Q_OBJECT

private slots:
    void everyValue_data();
    void everyValue();
    void frequenciesAreUnderstood_data();
    void frequenciesAreUnderstood();
    void aSettingTakesFewExchanges();
    void severalValues();
    void outOfRange_data();
    void outOfRange();
    void theUnitRefusesANumber();
    void refusedForWantOfThePassword();
    void thePasswordComesFromStandardInput();
    void nothingUnconfirmedIsDone_data();
    void nothingUnconfirmedIsDone();
    void anEchoThatTheUnitDoesNotKeep();
    void anUnlockedOscillator();
    void theFirstFailureEndsIt();
    void aUnitThatFallsSilent();
    void aUnitThatIsUnplugged();
};

void TestCtlSet::everyValue_data()
{
    QTest::addColumn<QByteArray>("assignment");
    QTest::addColumn<QByteArray>("printed");
    QTest::addColumn<QString>("sent");
    const auto row = [](const char *assignment, const char *printed, const char *sent) {
        QTest::newRow(assignment) << QByteArray(assignment) << QByteArray(printed)
                                  << QString::fromUtf8(sent);
    };
    row("frequency 146.5", "frequency 146.5 MHz", "*STEP 1860");
    row("frequency step 1860", "step 1860", "*STEP 1860");
    row("step 1860", "step 1860", "*STEP 1860");
    row("attenuation 10", "attenuation 10 dB", "*ATTN 10");
    row("attenuation 10.5dB", "attenuation 10.5 dB", "*ATTN 10.5");
    row("agc on", "agc on", "*AGC_ 1");
    row("agc OFF", "agc off", "*AGC_ 0");
    row("agc-offset -3 dB", "agc-offset -3 dB", "!AOFF -3");
    row("input-attenuation 3", "input-attenuation 3 dB", "INPUT ATTN 3");
    row("bypass on", "bypass on", "*ACT_ 1");
    row("pelltrim 140", "pelltrim 140 clicks", "*ZNSE 140");
    row("pelltrim 140 clicks", "pelltrim 140 clicks", "*ZNSE 140");
    row("calibrated on", "calibrated on", "*ZNCM 1");
}

// The last firmware with an AGC offset.
static sim::UnitSettings olderUnit()
{
    sim::UnitSettings settings;
    settings.firmware = "KELDO-X REV 3.17";
    return settings;
}

void TestCtlSet::everyValue()
{
    QFETCH(QByteArray, assignment);
    QFETCH(QByteArray, printed);
    QFETCH(QString, sent);
    const CtlBench bench(olderUnit());
    const Outcome outcome = CtlBench::onUnit(("set " + assignment).constData());
    CTL_COMPARE(outcome, 0, printed + '\n');
    QCOMPARE(outcome.err, QString());
    QVERIFY2(bench.commands().contains(sent), qPrintable(bench.commands().join(u'\n')));
    // What is printed can be set.
    CTL_COMPARE(CtlBench::onUnit(("set " + printed).constData()), 0, printed + '\n');
}

void TestCtlSet::frequenciesAreUnderstood_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text :
         {"146.5MHz", "146500kHz", "146500000Hz", "0.1465GHz", "146.5 mhz", "146.51", "step 1860"})
        QTest::newRow(text) << QByteArray(text);
}

void TestCtlSet::frequenciesAreUnderstood()
{
    QFETCH(QByteArray, text);
    const CtlBench bench;
    QCOMPARE(CtlBench::onUnit(("set frequency " + text).constData()).code, 0);
    QCOMPARE(bench.unit->step(), 1860);
}

void TestCtlSet::aSettingTakesFewExchanges()
{
    const CtlBench bench;
    QCOMPARE(CtlBench::onUnit("set frequency 146.5").code, 0);
    QCOMPARE(bench.commands(),
             (QStringList{QStringLiteral("*ID?"), QStringLiteral("*START FREQ?"),
                          QStringLiteral("*MAX STEP?"), QStringLiteral("*CHAN SPACE?"),
                          QStringLiteral("*STEP 1860"), QStringLiteral("*STEP?")}));
}

void TestCtlSet::severalValues()
{
    const CtlBench bench;
    const Outcome outcome =
        CtlBench::onUnit("set agc off attenuation 10 dB frequency 146.5MHz limiting -2 --json");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.json().object(),
             (QJsonObject{{QStringLiteral("agc"), false},
                          {QStringLiteral("attenuation"), 10},
                          {QStringLiteral("frequency"), 146.5},
                          {QStringLiteral("limiting"), QStringLiteral("-2")}}));
    QCOMPARE(bench.unit->inputLimitingMode(), 3);
    QCOMPARE(bench.unit->step(), 1860);
}

void TestCtlSet::outOfRange_data()
{
    QTest::addColumn<QByteArray>("assignment");
    QTest::addColumn<QString>("message");
    const QString frequency = QStringLiteral("Cannot set the device to a frequency outside its "
                                             "range (100 to 200 MHz).");
    QTest::newRow("below") << QByteArray("frequency 99.9") << frequency;
    QTest::newRow("above") << QByteArray("frequency 201MHz") << frequency;
    QTest::newRow("step") << QByteArray("frequency step 4001")
                          << QStringLiteral("Cannot set the device to a step outside its range "
                                            "(0 to 4000).");
    QTest::newRow("negative") << QByteArray("step -1")
                              << QStringLiteral("Cannot set the device to a step");
}

void TestCtlSet::outOfRange()
{
    QFETCH(QByteArray, assignment);
    QFETCH(QString, message);
    const CtlBench bench;
    const Outcome outcome = CtlBench::onUnit(("set " + assignment).constData());
    CTL_COMPARE(outcome, 1, "");
    QVERIFY2(outcome.err.startsWith(QStringLiteral("keldo-x-ctl: ") + message),
             qPrintable(outcome.err));
    QVERIFY(bench.commands().filter(QStringLiteral("*STEP ")).isEmpty());
}

void TestCtlSet::theUnitRefusesANumber()
{
    const CtlBench bench;
    const Outcome outcome = CtlBench::onUnit("set pelltrim 300 --json");
    CTL_COMPARE(outcome, 1, "{}\n");
    QVERIFY2(outcome.err.contains(QStringLiteral("It answered \"NUMBER OUT OF RANGE\".")),
             qPrintable(outcome.err));
}

void TestCtlSet::refusedForWantOfThePassword()
{
    const CtlBench bench;
    bench.unit->setPassword("secret");
    for (const char *command : {"set frequency 146.5", "set agc on", "set pelltrim 140"}) {
        const Outcome outcome = CtlBench::onUnit(command);
        CTL_COMPARE(outcome, 1, "");
        QVERIFY2(outcome.err.contains(QStringLiteral("it wants its password")),
                 qPrintable(outcome.err));
    }
    QCOMPARE(bench.unit->step(), 0);
}

void TestCtlSet::thePasswordComesFromStandardInput()
{
    const CtlBench bench;
    bench.unit->setPassword("secret");
    const Outcome sent = CtlBench::onUnit("raw - --verbose", "PASSWORD secret\n");
    QVERIFY(bench.commands().contains(QStringLiteral("PASSWORD secret")));
    QVERIFY2(sent.err.contains(QStringLiteral("COM7 > PASSWORD ****")), qPrintable(sent.err));
    QVERIFY(!sent.err.contains(QStringLiteral("secret")));
    CTL_COMPARE(CtlBench::onUnit("set frequency 146.5"), 0, "frequency 146.5 MHz\n");
}

void TestCtlSet::nothingUnconfirmedIsDone_data()
{
    QTest::addColumn<QByteArray>("assignment");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<sim::Fault>("fault");
    QTest::addColumn<int>("code");
    using sim::Fault;
    for (const auto &[name, fault, code] :
         {std::tuple{"garbage", Fault::Garbage, 1}, std::tuple{"empty", Fault::EmptyReply, 1},
          std::tuple{"binary", Fault::Binary, 1}, std::tuple{"endless", Fault::Endless, 1},
          std::tuple{"silent", Fault::Silence, 4}, std::tuple{"gone", Fault::Unplug, 3}})
        for (const auto &[assignment, command] :
             {std::pair{"frequency 146.5", "*STEP "}, std::pair{"attenuation 10", "*ATTN "},
              std::pair{"agc on", "*AGC_ "}, std::pair{"agc-offset -3", "!AOFF "},
              std::pair{"input-attenuation 3", "INPUT ATTN "}, std::pair{"bypass on", "*ACT_ "},
              std::pair{"pelltrim 140", "*ZNSE "}, std::pair{"calibrated on", "*ZNCM "}})
            QTest::addRow("%s: %s", name, assignment)
                << QByteArray(assignment) << QByteArray(command) << fault << code;
}

void TestCtlSet::nothingUnconfirmedIsDone()
{
    QFETCH(QByteArray, assignment);
    QFETCH(QByteArray, command);
    QFETCH(sim::Fault, fault);
    QFETCH(int, code);
    CtlBench bench(olderUnit());
    bench.line.setFault(fault, command.toStdString());
    // An offset is confirmed by its reading alone: any reply to the setting passes.
    if (assignment.startsWith("agc-offset") && code == 1 && fault != sim::Fault::Endless)
        bench.line.setFault(fault, "*AOFF?");
    const Outcome outcome = CtlBench::onUnit(("set " + assignment).constData());
    CTL_COMPARE(outcome, code, "");
    QVERIFY(outcome.err.startsWith(QStringLiteral("keldo-x-ctl: ")));
}

void TestCtlSet::anEchoThatTheUnitDoesNotKeep()
{
    CtlBench bench(olderUnit());
    const auto unit = bench.unit;
    bench.line.setResponder([unit](const std::string &command) {
        return command.starts_with("!AOFF") ? std::optional<std::string>("OK")
                                            : unit->answer(command);
    });
    const Outcome outcome = CtlBench::onUnit("set agc-offset -3");
    CTL_COMPARE(outcome, 1, "");
    QCOMPARE(outcome.err,
             QStringLiteral("keldo-x-ctl: The unit did not take agc-offset -3 dB: it has 0 dB.\n"));
}

void TestCtlSet::anUnlockedOscillator()
{
    const CtlBench bench;
    bench.unit->setUnlockedSteps(1800, 1900);
    const Outcome outcome = CtlBench::onUnit("set frequency 146.5");
    CTL_COMPARE(outcome, 1, "");
    QVERIFY2(outcome.err.contains(QStringLiteral("The device oscillator is unlocked!")),
             qPrintable(outcome.err));
}

void TestCtlSet::theFirstFailureEndsIt()
{
    const CtlBench bench;
    const Outcome outcome = CtlBench::onUnit("set agc on frequency 300 bypass on");
    CTL_COMPARE(outcome, 1, "agc on\n");
    QVERIFY(!bench.unit->bypass());
}

void TestCtlSet::aUnitThatFallsSilent()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Silence, "*REVISION?");
    const Outcome outcome = CtlBench::onUnit("set agc on");
    CTL_COMPARE(outcome, 4, "");
    QCOMPARE(bench.commands().last(), QStringLiteral("*REVISION?"));
}

void TestCtlSet::aUnitThatIsUnplugged()
{
    CtlBench bench;
    bench.line.setFault(sim::Fault::Unplug, "*STEP?");
    const Outcome outcome = CtlBench::onUnit("set frequency 146.5");
    CTL_COMPARE(outcome, 3, "");
}

KELDOX_TEST(TestCtlSet)
#include "TestCtlSet.moc"
