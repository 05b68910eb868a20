// Setting attenuation, input attenuation and the AGC offset: what is sent and how it is judged.
#include "device/UnitFixture.h"

class TestLevels : public QObject
{
    Q_OBJECT

private slots:
    void settings_data();
    void settings();
    void whatIsSent_data();
    void whatIsSent();
    void tenthsAreTheSameWhenTheyComeBack();
    void aClosedPortAnswersNothing();
};

struct Setting
{
    const char *command; // with the value 10
    const char *event;
    const char *message;
    bool asksPassword;
    Act write; // of 10
};
Q_DECLARE_METATYPE(Setting)

static const Setting attenuation = {
    "*ATTN 10", "AttenChange", "The device did not respond correctly to an attenuation command.",
    true, [](clsKeldoX &u) { u.setAtten(10); }};
static const Setting inputAttenuation = {
    "INPUT ATTN 10", "InputAttenChange",
    "The device did not respond correctly to an input attenuation command.", false,
    [](clsKeldoX &u) { u.setInputAtten(10); }};

void TestLevels::settings_data()
{
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<double>("told"); // by the change event; 3 is the value from before
    QTest::addColumn<int>("status");
    for (const Setting &setting : {attenuation, inputAttenuation}) {
        const auto row = [&](const char *name, const char *reply, double told, int status) {
            QTest::addRow("%s: %s", setting.event, name) << setting << reply << told << status;
        };
        row("echo", "10", 10, 0);
        row("another form of the number", "10.0", 10, 0);
        row("with its unit", "10 dB", 10, 0);
        row("another number", "9.5", 3, 2);
        row("out of range", "NUMBER OUT OF RANGE", 3, 2);
        row("empty", "", 3, 2);
        row("not one number", "1-0", 3, 2);
        row("two points", "10.0.0", 3, 2);
        row("refused", "PERMISSION DENIED", 3, setting.asksPassword ? 5 : 2);
        row("refused, with more", "PERMISSION DENIED.", 3, setting.asksPassword ? 5 : 2);
        row("not at the start", "NO PERMISSION DENIED", 3, 2);
    }
}

void TestLevels::settings()
{
    QFETCH(Setting, setting);
    QFETCH(QString, reply);
    QFETCH(double, told);
    QFETCH(int, status);
    UnitFixture f;
    f.connectUnit();
    f.unit->setAtten(3);
    f.unit->setInputAtten(3);
    f.forget();
    f.reply(setting.command, reply.toStdString());
    if (status == 2)
        f.boxes().expect(QString::fromLatin1(setting.message), MessageBox::Exclamation);
    setting.write(*f.unit);
    QVERIFY(f.boxes().allShown());
    QStringList events = {QString::fromLatin1(setting.event) + QLatin1Char(' ') + text(told),
                          QStringLiteral("StatusChange %1").arg(status)};
    if (status == 5)
        events.prepend(QStringLiteral("GetPassword"));
    QCOMPARE(f.events.take(), events);
    QCOMPARE(f.unit->lastStatus(), status);
    QCOMPARE(f.sent(), QStringList{QString::fromLatin1(setting.command)});
    f.unit->setDisplayErrors(false); // no box from here on
    setting.write(*f.unit);
    QCOMPARE(f.events.take(), events);
}

void TestLevels::whatIsSent_data()
{
    QTest::addColumn<Act>("write");
    QTest::addColumn<QString>("command");
    const auto row = [](const char *command, const Act &write) {
        QTest::newRow(command) << write << QString::fromLatin1(command);
    };
    row("*ATTN 10", [](clsKeldoX &u) { u.setAtten(10); });
    row("*ATTN 2.5", [](clsKeldoX &u) { u.setAtten(2.5); });
    row("*ATTN 0", [](clsKeldoX &u) { u.setAtten(0); });
    row("*ATTN-3", [](clsKeldoX &u) { u.setAtten(-3); });
    row("INPUT ATTN 0.5", [](clsKeldoX &u) { u.setInputAtten(0.5); });
    row("INPUT ATTN-1", [](clsKeldoX &u) { u.setInputAtten(-1); });
    // Here one blank stands before any number.
    row("!AOFF 3", [](clsKeldoX &u) { u.setAttenOffset(3); });
    row("!AOFF -3", [](clsKeldoX &u) { u.setAttenOffset(-3); });
    row("!AOFF 1.5", [](clsKeldoX &u) { u.setAttenOffset(1.5); });
    row("!AOFF -1.5", [](clsKeldoX &u) { u.setAttenOffset(-1.5); });
    row("!AOFF 0", [](clsKeldoX &u) { u.setAttenOffset(0); });
}

void TestLevels::whatIsSent()
{
    QFETCH(Act, write);
    UnitFixture f;
    f.connectUnit();
    f.unit->setDisplayErrors(false);
    write(*f.unit);
    QCOMPARE(f.sent().size(), 1);
    write(*f.unit);
    QTEST(f.sent().join(QLatin1Char('|')), "command");
}

// 0.1 + 0.1 + 0.1 is not 0.3 in binary, but it is sent so and comes back so.
void TestLevels::tenthsAreTheSameWhenTheyComeBack()
{
    sim::UnitSettings settings = unitWithFirmware("3.38");
    settings.attenuationStep = 0;
    UnitFixture f(settings);
    f.connectUnit();
    double level = 0;
    for (int i = 1; i <= 30; ++i) {
        level += 0.1;
        f.unit->setAtten(level);
        QCOMPARE(f.unit->lastStatus(), 0);
        f.unit->setInputAtten(level);
        QCOMPARE(f.unit->lastStatus(), 0);
    }
    QCOMPARE(f.sent().mid(4, 2), listed("*ATTN 0.3|INPUT ATTN 0.3"));
}

void TestLevels::aClosedPortAnswersNothing()
{
    UnitFixture f(unitWithFirmware("3.17"));
    f.connectUnit();
    f.unit->setAtten(3);
    f.unit->setInputAtten(3);
    f.unit->setAttenOffset(3);
    QCOMPARE(f.unit->MaxAtten(), 50);
    QCOMPARE(f.unit->attenStep(), 0.5);
    f.unit->commPort()->ClosePort();
    f.forget();
    QCOMPARE(f.unit->atten(), 0.0);
    QCOMPARE(f.unit->MaxAtten(), 0);
    QCOMPARE(f.unit->attenStep(), 0.0);
    QCOMPARE(f.unit->InputAtten(), 0.0);
    QCOMPARE(f.unit->attenOffset(), 0.0);
    f.unit->setAtten(1);
    f.unit->setInputAtten(1);
    f.unit->setAttenOffset(1);
    QCOMPARE(f.events.take(), QStringList());
    QVERIFY(f.line.commands().empty());
}

KELDOX_TEST(TestLevels)
#include "TestLevels.moc"
