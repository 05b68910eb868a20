// What the unit's object knows and tells on a bad line: a setting without an answer, another unit
// at the same port, a question in the middle of another.
#include "device/UnitFixture.h"

#include "core/DebugSwitches.h"

class TestTruth : public QObject
{
    Q_OBJECT

private slots:
    void aBadReplyIsLoggedWhenTheOperatorWantsThem();
    void aSettingWithoutAGoodAnswerIsUnconfirmed_data();
    void aSettingWithoutAGoodAnswerIsUnconfirmed();
    void afterATimeOutOnlyAReadingConfirms();
    void aRefusalLeavesNoDoubt();
    void anotherUnitAtThePortIsReadAnew();
    void whatANewUnitDoesNotTellIsNotTheOldOnes();
    void aMissingValueYieldsNoFrequency_data();
    void aMissingValueYieldsNoFrequency();
    void aQuestionInTheMiddleOfAnotherIsNotSent();
};

// Collects "value confirmed" pairs.
struct Doubts
{
    explicit Doubts(clsKeldoX &unit)
    {
        QObject::connect(&unit, &clsKeldoX::ConfirmationChange, &unit,
                         [this](UnitValue value, bool confirmed) {
                             told.append({value, confirmed});
                         });
    }
    QList<QPair<UnitValue, bool>> told;
};

void TestTruth::aBadReplyIsLoggedWhenTheOperatorWantsThem()
{
    const auto off = qScopeGuard([] { debugSwitches().detailedErrors = false; });
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    const auto badReplies = [&f] {
        f.forget();
        f.unit->setAGC(true);
        return f.log->lines().filter(QStringLiteral("bad reply"));
    };
    f.reply("*AGC_ 1", "nonsense");
    QCOMPARE(badReplies(), QStringList());
    debugSwitches().detailedErrors = true;
    QCOMPARE(badReplies(), QStringList{QStringLiteral("clsKeldoX| bad reply <nonsense>")});
}

void TestTruth::aSettingWithoutAGoodAnswerIsUnconfirmed_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("answer"); // empty: none
    QTest::addColumn<Act>("set");
    QTest::addColumn<Act>("read");
    QString answer = QStringLiteral("x@");
    const auto row = [&](const char *name, UnitValue value, const char *command, Act set,
                         Act read) {
        QTest::addRow("%s", name) << int(value) << QString::fromLatin1(command) << answer << set
                                  << read;
    };
    row(
        "frequency", UnitValue::Frequency, "*STEP 7",
        [](clsKeldoX &unit) { unit.setCurrentStep(7); },
        [](clsKeldoX &unit) { unit.CurrentStep(); });
    row(
        "attenuation", UnitValue::Attenuation, "*ATTN 10",
        [](clsKeldoX &unit) { unit.setAtten(10); }, [](clsKeldoX &unit) { unit.atten(); });
    row(
        "input attenuation", UnitValue::InputAttenuation, "INPUT ATTN 10",
        [](clsKeldoX &unit) { unit.setInputAtten(10); },
        [](clsKeldoX &unit) { unit.InputAtten(); });
    row(
        "AGC", UnitValue::AGC, "*AGC_ 0", [](clsKeldoX &unit) { unit.setAGC(false); },
        [](clsKeldoX &unit) { unit.AGC(); });
    row(
        "bypass", UnitValue::Bypass, "*ACT_ 1", [](clsKeldoX &unit) { unit.setBypass(true); },
        [](clsKeldoX &unit) { unit.Bypass(); });
    row(
        "input limiting", UnitValue::InputLimiting, "InputLimitMode 2",
        [](clsKeldoX &unit) { unit.setInputLimitingMode(2); },
        [](clsKeldoX &unit) { unit.InputLimitingMode(); });
    row(
        "fine tuning", UnitValue::Pelltrim, "*ZNSE 40",
        [](clsKeldoX &unit) { unit.setPelltrim(40); }, [](clsKeldoX &unit) { unit.Pelltrim(); });
    row(
        "calibrated mode", UnitValue::CalMode, "*ZNCM 1",
        [](clsKeldoX &unit) { unit.setZN_calMode(true); },
        [](clsKeldoX &unit) { unit.ZN_calMode(); });
    answer.clear(); // whatever the unit answers to this one is an echo
    row(
        "AGC offset", UnitValue::AGCOffset, "!AOFF 3",
        [](clsKeldoX &unit) { unit.setAttenOffset(3); },
        [](clsKeldoX &unit) { unit.attenOffset(); });
}

void TestTruth::aSettingWithoutAGoodAnswerIsUnconfirmed()
{
    QFETCH(const int, value);
    QFETCH(const QString, command);
    QFETCH(const QString, answer);
    QFETCH(const Act, set);
    QFETCH(const Act, read);
    const bool isSilent = answer.isEmpty();
    const auto what = static_cast<UnitValue>(value);
    // Newer firmware has no offset.
    UnitFixture f(unitWithFirmware(what == UnitValue::AGCOffset ? "3.17" : "3.38"));
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    Doubts doubts(*f.unit);
    f.reply(command.toStdString(),
            isSilent ? std::nullopt : std::optional<std::string>(answer.toStdString()));
    if (isSilent)
        f.unit->commPort()->settimeOutMs(200);
    set(*f.unit);
    QVERIFY(f.unit->isUnconfirmed(what));
    set(*f.unit); // told once
    QCOMPARE(doubts.told, (QList<QPair<UnitValue, bool>>{{what, false}}));
    read(*f.unit);
    QVERIFY(!f.unit->isUnconfirmed(what));
    QCOMPARE(doubts.told, (QList<QPair<UnitValue, bool>>{{what, false}, {what, true}}));
    // A good answer after a bad one confirms too: no late one can stand for it. After none, one
    // can.
    set(*f.unit);
    QVERIFY(f.unit->isUnconfirmed(what));
    f.script->clear();
    set(*f.unit);
    QCOMPARE(f.unit->isUnconfirmed(what), isSilent);
}

void TestTruth::afterATimeOutOnlyAReadingConfirms()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*ATTN 10", std::nullopt);
    f.unit->commPort()->settimeOutMs(60);
    f.unit->setAtten(10);
    QVERIFY(f.unit->isUnconfirmed(UnitValue::Attenuation));
    f.script->clear();
    f.unit->commPort()->settimeOutMs(UnitFixture::replyTimeMs);
    f.unit->setAtten(5);
    QCOMPARE(f.unit->lastStatus(), std::int32_t(clsKeldoX::Good));
    QVERIFY(f.unit->isUnconfirmed(UnitValue::Attenuation));
    f.unit->atten();
    QVERIFY(!f.unit->isUnconfirmed(UnitValue::Attenuation));
}

void TestTruth::aRefusalLeavesNoDoubt()
{
    UnitFixture f;
    f.connectUnit();
    f.line.setFault(sim::Fault::PermissionDenied);
    f.unit->setAtten(10);
    f.unit->setCurrentStep(7);
    QVERIFY(!f.unit->isUnconfirmed(UnitValue::Attenuation));
    QVERIFY(!f.unit->isUnconfirmed(UnitValue::Frequency));
}

void TestTruth::anotherUnitAtThePortIsReadAnew()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.line.setFault(sim::Fault::Unplug);
    f.unit->Locked();
    f.unit->setDisplayErrors(true);
    sim::UnitSettings other = unitWithFirmware("3.38");
    other.startMHz = 400;
    sim::SimulatedLine again;
    again.addUnit(std::make_shared<sim::SimulatedUnit>(other));
    f.fixture.plug(UnitFixture::port, again.device());
    QVERIFY(f.unit->Initialize());
    QCOMPARE(f.unit->StartFreq(), 400.0);
    QCOMPARE(f.unit->StopFreq(), 410.0);
}

void TestTruth::whatANewUnitDoesNotTellIsNotTheOldOnes()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setAtten(10);
    f.unit->setPelltrim(40);
    f.unit->setPelltrimCal(50);
    QCOMPARE(f.unit->Pelltrim(), 40);
    QCOMPARE(f.unit->PelltrimCal(), 50);
    QVERIFY(f.unit->HasBypass());
    f.unit->setDisplayErrors(false);
    f.line.setFault(sim::Fault::Unplug);
    f.unit->Locked();
    sim::SimulatedLine again;
    again.addUnit(std::make_shared<sim::SimulatedUnit>(unitWithFirmware("3.38")));
    again.setResponder([unit = std::make_shared<sim::SimulatedUnit>(unitWithFirmware("3.38"))](
                           const std::string &command) -> std::optional<std::string> {
        if (command == "*START FREQ?" || command == "*MAX STEP?" || command == "*ATTN?" ||
            command == "*ZNSE?" || command == "*ZNCA?" || command == "*BYP_?")
            return "x@";
        return unit->answer(command);
    });
    f.fixture.plug(UnitFixture::port, again.device());
    f.unit->Initialize();
    QCOMPARE(f.unit->StartFreq(), 0.0);
    QCOMPARE(f.unit->MaxStep(), 0);
    QCOMPARE(f.unit->atten(), 0.0);
    QCOMPARE(f.unit->Pelltrim(), 128); // the middle, as of a unit that never told
    QCOMPARE(f.unit->PelltrimCal(), 128);
    QVERIFY(!f.unit->HasBypass());
}

void TestTruth::aMissingValueYieldsNoFrequency_data()
{
    QTest::addColumn<QString>("command");
    QTest::addRow("start frequency") << "*START FREQ?";
    QTest::addRow("spacing") << "*CHAN SPACE?";
}

void TestTruth::aMissingValueYieldsNoFrequency()
{
    QFETCH(const QString, command);
    UnitFixture f;
    f.simulated->setStep(12);
    f.boxes().acceptAll();
    f.reply(command.toStdString(), "x@");
    f.unit->Initialize();
    f.unit->CurrentStep();
    f.unit->setCurrentStep(3);
    const QStringList events = f.events.take();
    QVERIFY2(events.filter(QStringLiteral("FreqChange")).isEmpty(),
             qPrintable(events.join(QLatin1Char('|'))));
}

void TestTruth::aQuestionInTheMiddleOfAnotherIsNotSent()
{
    UnitFixture f;
    f.connectUnit();
    f.line.setFault(sim::Fault::LateReply);
    f.line.setLateBy(std::chrono::milliseconds(150));
    bool ran = false;
    QTimer::singleShot(50, this, [&] {
        ran = true;
        f.unit->setAtten(10);
        QCOMPARE(f.unit->atten(), 0.0);
        f.unit->setCurrentStep(9);
        QCOMPARE(f.unit->deviceWrite(QStringLiteral("*ID?")), QString());
    });
    f.unit->setCurrentStep(7);
    QVERIFY(ran);
    QCOMPARE(f.unit->lastStatus(), std::int32_t(clsKeldoX::Good));
    f.line.setFault(sim::Fault::None);
    QCOMPARE(f.simulated->step(), 7);
    QCOMPARE(f.sent(), listed("*STEP 7"));
    QVERIFY(f.boxes().shown().isEmpty());
}

KELDOX_TEST(TestTruth)
#include "TestTruth.moc"
