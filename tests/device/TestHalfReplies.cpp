// A reply that ends without its carriage return is a bad reply, whatever it looks like.
#include "device/UnitFixture.h"

class TestHalfReplies : public QObject
{
    Q_OBJECT

private slots:
    void halfAReplyIsABadReply_data();
    void halfAReplyIsABadReply();
    void halfASetUpValueIsNotTaken_data();
    void halfASetUpValueIsNotTaken();
    void whatHadArrivedIsStillGiven();
};

void TestHalfReplies::halfAReplyIsABadReply_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("half");
    QTest::addColumn<Act>("act");
    QTest::addRow("LOCKED out of UNLOCKED")
        << "*LOCK?"
        << "LOCKED" << Act([](clsKeldoX &unit) { QVERIFY(!unit.Locked()); });
    QTest::addRow("a step command")
        << "*STEP 7"
        << "LOCKED" << Act([](clsKeldoX &unit) { unit.setCurrentStep(7); });
    QTest::addRow("a step") << "*STEP?"
                            << "1" << Act([](clsKeldoX &unit) { QCOMPARE(unit.CurrentStep(), 0); });
    QTest::addRow("a level") << "*ATTN 10"
                             << "10" << Act([](clsKeldoX &unit) { unit.setAtten(10); });
    QTest::addRow("a switch") << "*AGC_ 1"
                              << "1" << Act([](clsKeldoX &unit) { unit.setAGC(true); });
    QTest::addRow("input limiting")
        << "InputLimitMode 2"
        << "2" << Act([](clsKeldoX &unit) { unit.setInputLimitingMode(2); });
    QTest::addRow("fine tuning") << "*ZNSE 40"
                                 << "40 clicks"
                                 << Act([](clsKeldoX &unit) { unit.setPelltrim(40); });
    QTest::addRow("spacing") << "*CHAN SPACE?"
                             << "2500 Hz" << Act([](clsKeldoX &unit) {
                                    QCOMPARE(unit.ChannelSpacing(), 25000); // as before
                                });
    QTest::addRow("a silent step")
        << "*STEP?"
        << "" << Act([](clsKeldoX &unit) { QCOMPARE(unit.CurrentStep(), 0); });
}

void TestHalfReplies::halfAReplyIsABadReply()
{
    QFETCH(const QString, command);
    QFETCH(const QString, half);
    QFETCH(const Act, act);
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    f.unit->commPort()->settimeOutMs(60);
    f.line.setTerminator("");
    f.reply(command.toStdString(), half.toStdString());
    act(*f.unit);
    QCOMPARE(f.unit->lastStatus(), std::int32_t(clsKeldoX::BadReply));
    QVERIFY(f.events.take().contains(QStringLiteral("StatusChange 2")));
}

void TestHalfReplies::halfASetUpValueIsNotTaken_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("half");
    QTest::addColumn<Read>("read");
    QTest::addColumn<QString>("taken");
    QTest::addRow("maximum step") << "*MAX STEP?"
                                  << "40"
                                  << Read([](clsKeldoX &unit) { return text(unit.MaxStep()); })
                                  << "0";
    QTest::addRow("start") << "*START FREQ?"
                           << "10 MHz"
                           << Read([](clsKeldoX &unit) { return text(unit.StartFreq()); }) << "0";
    QTest::addRow("spacing") << "*CHAN SPACE?"
                             << "2500 Hz"
                             << Read([](clsKeldoX &unit) { return text(unit.ChannelSpacing()); })
                             << "0";
    // A unit that cannot tell its options has them all.
    QTest::addRow("options") << "*AOPT?"
                             << "1" << Read([](clsKeldoX &unit) { return text(unit.AOPT()); })
                             << "-1";
    QTest::addRow("more options") << "OPTC?"
                                  << "1" << Read([](clsKeldoX &unit) { return text(unit.COPT()); })
                                  << "-1";
}

// Asked before the connection is complete: what is read then is kept.
void TestHalfReplies::halfASetUpValueIsNotTaken()
{
    QFETCH(const QString, command);
    QFETCH(const QString, half);
    QFETCH(const Read, read);
    QFETCH(const QString, taken);
    UnitFixture f;
    f.open();
    f.unit->FirmwareRevision(); // decides what is asked
    f.unit->setDisplayErrors(false);
    f.unit->commPort()->settimeOutMs(60);
    f.forget();
    f.line.setTerminator("");
    f.reply(command.toStdString(), half.toStdString());
    QCOMPARE(read(*f.unit), taken);
    QCOMPARE(f.unit->lastStatus(), std::int32_t(clsKeldoX::BadReply));
    QVERIFY(f.events.take().contains(QStringLiteral("StatusChange 2")));
    QStringList commands;
    for (const std::string &sent : f.line.commands())
        commands.append(QString::fromStdString(sent));
    QCOMPARE(commands, QStringList{command});
}

void TestHalfReplies::whatHadArrivedIsStillGiven()
{
    UnitFixture f;
    f.connectUnit();
    f.unit->commPort()->settimeOutMs(60);
    f.line.setTerminator("");
    f.reply("*STEP?", "12");
    QCOMPARE(f.unit->deviceWrite(QStringLiteral("*STEP?")), QStringLiteral("12"));
}

KELDOX_TEST(TestHalfReplies)
#include "TestHalfReplies.moc"
