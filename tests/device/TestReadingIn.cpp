// A unit is connected and read over a bad line: it falls silent, answers badly, or the operator
// breaks it off.
#include "device/UnitFixture.h"

#include <QElapsedTimer>

class TestReadingIn : public QObject
{
    Q_OBJECT

private slots:
    void aUnitThatFallsSilentIsGivenUpAfterTwoCommands();
    void withoutDisplayedErrorsItIsGivenUpWithoutABox();
    void oneSilenceIsTakenForABadReply();
    void silencesThatDoNotFollowEachOtherDoNotEndIt();
    void theSilenceAtAConnectionsEndIsNotTheNextOnesFirst();
    void aSilenceIsToldWhenTheNextCommandIsAnswered();
    void aBadReplyIsToldAtOnce();
    void theSecondBadReplyOfAConnectionIsInTheLogAlone();
    void aConnectionThatIsBrokenOffEndsAtOnceWithoutABox();
    void aSilenceBeforeItWasBrokenOffIsNotTold();
    void whatWasMissedIsReadAtTheNextConnection_data();
    void whatWasMissedIsReadAtTheNextConnection();
    void aBadReplyAfterTheReadingMissesNothing();

private:
    // The time-out of the first connection can be handed in where the port is in event mode.
    static void waitOnly(UnitFixture &f, int ms)
    {
        f.unit->commPort()->setPortMode(clsCommPort::Event);
        f.unit->commPort()->settimeOutMs(ms);
    }
};

void TestReadingIn::aUnitThatFallsSilentIsGivenUpAfterTwoCommands()
{
    UnitFixture f;
    waitOnly(f, 150);
    f.line.setListener([&line = f.line](bool fromUnit, const std::string &text) {
        if (fromUnit && text == "KELDO-X")
            line.setFault(sim::Fault::Silence);
    });
    f.boxes().expect(QStringLiteral("The unit on COM3 has stopped answering. Check its power and "
                                    "data connections, then connect it again."),
                     48);
    f.unit->Initialize();
    f.line.setListener({});
    QVERIFY(!f.unit->PortIsOpen());
    QVERIFY(!f.unit->isInitialized());
    QVERIFY(!f.events.take().contains(QStringLiteral("DUTChange")));
    QStringList commands;
    for (const std::string &command : f.line.commands())
        commands.append(QString::fromStdString(command));
    QCOMPARE(commands, listed("*ID?|*LOCK?|*REVISION?"));
}

void TestReadingIn::withoutDisplayedErrorsItIsGivenUpWithoutABox()
{
    UnitFixture f;
    waitOnly(f, 150);
    f.unit->setDisplayErrors(false);
    f.reply("*REVISION?", std::nullopt);
    f.reply("*START FREQ?", std::nullopt);
    f.unit->Initialize();
    QVERIFY(!f.unit->PortIsOpen());
    QVERIFY(f.boxes().shown().isEmpty());
}

void TestReadingIn::oneSilenceIsTakenForABadReply()
{
    UnitFixture f;
    waitOnly(f, 150);
    f.reply("*IFRQ?", std::nullopt);
    f.boxes().acceptAll();
    f.unit->Initialize();
    QCOMPARE(f.boxes().shown().size(), 1);
    QCOMPARE(f.boxes().shown().at(0).text,
             QStringLiteral("The device did not respond correctly to an 'IF frequency' query."));
    QVERIFY(f.unit->PortIsOpen());
    QVERIFY(f.events.take().contains(QStringLiteral("DUTChange")));
}

void TestReadingIn::silencesThatDoNotFollowEachOtherDoNotEndIt()
{
    UnitFixture f;
    waitOnly(f, 150);
    f.reply("*REVISION?", std::nullopt);
    f.reply("*IFRQ?", std::nullopt);
    f.boxes().acceptAll();
    f.unit->Initialize();
    QVERIFY(f.unit->PortIsOpen());
    QVERIFY(f.events.take().contains(QStringLiteral("DUTChange")));
}

void TestReadingIn::theSilenceAtAConnectionsEndIsNotTheNextOnesFirst()
{
    UnitFixture f;
    waitOnly(f, 150);
    f.boxes().acceptAll();
    f.reply("*STEP?", std::nullopt);
    f.unit->Initialize();
    QCOMPARE(f.line.commands().back(), std::string("*STEP?"));
    QCOMPARE(f.boxes().shown().size(), 1);
    QVERIFY(f.unit->PortIsOpen());
    f.script->clear();
    f.reply("*LOCK?", std::nullopt);
    f.unit->Initialize();
    QVERIFY(f.unit->PortIsOpen());
}

// It may be the first of two, which end the connection with a box of their own.
void TestReadingIn::aSilenceIsToldWhenTheNextCommandIsAnswered()
{
    UnitFixture f;
    waitOnly(f, 150);
    f.reply("*IFRQ?", std::nullopt);
    std::string last;
    f.boxes().acceptAll();
    f.boxes().whileOpen([&] { last = f.line.commands().back(); });
    f.unit->Initialize();
    QCOMPARE(f.boxes().shown().size(), 1);
    QCOMPARE(last, std::string("*BNDW?"));
}

void TestReadingIn::aBadReplyIsToldAtOnce()
{
    UnitFixture f;
    f.reply("*IFRQ?", "nonsense");
    std::string last;
    f.boxes().acceptAll();
    f.boxes().whileOpen([&] { last = f.line.commands().back(); });
    f.unit->Initialize();
    QCOMPARE(f.boxes().texts(),
             QStringList{QStringLiteral(
                 "The device did not respond correctly to an 'IF frequency' query.")});
    QCOMPARE(last, std::string("*IFRQ?"));
}

void TestReadingIn::theSecondBadReplyOfAConnectionIsInTheLogAlone()
{
    UnitFixture f;
    f.reply("*START FREQ?", "nonsense");
    f.reply("*IFRQ?", "nonsense");
    f.boxes().acceptAll();
    f.unit->Initialize();
    QCOMPARE(f.boxes().shown().size(), 1);
    QVERIFY(f.log->lines().contains(QStringLiteral(
        "clsKeldoX|The device did not respond correctly to an 'IF frequency' query.")));
    QCOMPARE(f.boxes().shown().at(0).text,
             QStringLiteral("The device did not respond correctly to a 'start frequency' query."));
}

void TestReadingIn::aConnectionThatIsBrokenOffEndsAtOnceWithoutABox()
{
    UnitFixture f;
    f.reply("*START FREQ?", std::nullopt);
    QTimer::singleShot(150, this, [&] { f.unit->cancelInitialize(); });
    QElapsedTimer clock;
    clock.start();
    f.unit->Initialize();
    QVERIFY(clock.elapsed() < 2000);
    QVERIFY(!f.unit->PortIsOpen());
    QVERIFY(f.boxes().shown().isEmpty());
    QVERIFY(!f.events.take().contains(QStringLiteral("DUTChange")));
    // The next one is a connection like any other.
    f.script->clear();
    QVERIFY(f.unit->Initialize());
    QVERIFY(f.unit->PortIsOpen());
}

void TestReadingIn::aSilenceBeforeItWasBrokenOffIsNotTold()
{
    UnitFixture f;
    waitOnly(f, 400);
    f.reply("*REVISION?", std::nullopt);
    f.line.setListener([&f](bool fromUnit, const std::string &text) {
        if (!fromUnit && text == "*START FREQ?")
            QMetaObject::invokeMethod(f.unit.get(), [&f] { f.unit->cancelInitialize(); });
    });
    f.reply("*START FREQ?", std::nullopt);
    f.unit->Initialize();
    f.line.setListener({});
    QVERIFY(!f.unit->PortIsOpen());
    QVERIFY(f.boxes().shown().isEmpty());
}

void TestReadingIn::whatWasMissedIsReadAtTheNextConnection_data()
{
    QTest::addColumn<QString>("command"); // empty: none is missed
    QTest::addRow("nothing") << QString();
    for (const char *command : {"*REVISION?", "*START FREQ?", "*MAX STEP?", "*IFRQ?", "*BNDW?",
                                "*CHAN SPACE?", "*AOPT?", "OPTC?", "*BYP_?"})
        QTest::addRow("%s", command) << QString::fromLatin1(command);
}

void TestReadingIn::whatWasMissedIsReadAtTheNextConnection()
{
    QFETCH(const QString, command);
    UnitFixture f;
    waitOnly(f, 150);
    f.unit->setDisplayErrors(false);
    // Without these two others are asked for in vain too: silence would end the connection.
    const bool isAskedTwice =
        command == QLatin1String("*MAX STEP?") || command == QLatin1String("*CHAN SPACE?");
    if (!command.isEmpty())
        f.reply(command.toStdString(), isAskedTwice ? std::optional("x@") : std::nullopt);
    QVERIFY(f.unit->Initialize());
    QVERIFY(f.unit->PortIsOpen());
    f.script->clear();
    f.line.clearCommands();
    QVERIFY(f.unit->Initialize());
    const QStringList again = f.sent();
    const QString asked = command.isEmpty() ? QStringLiteral("*START FREQ?") : command;
    QCOMPARE(again.contains(asked), !command.isEmpty());
    QCOMPARE(f.unit->StartFreq(), 100.0);
    QVERIFY(f.unit->HasBypass());
}

void TestReadingIn::aBadReplyAfterTheReadingMissesNothing()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.reply("*CHAN SPACE?", "x@");
    f.unit->ChannelSpacing();
    QCOMPARE(f.sent(), listed("*CHAN SPACE?"));
    f.script->clear();
    f.line.clearCommands();
    QVERIFY(f.unit->Initialize());
    QVERIFY(!f.sent().contains(QStringLiteral("*START FREQ?")));
}

KELDOX_TEST(TestReadingIn)
#include "TestReadingIn.moc"
