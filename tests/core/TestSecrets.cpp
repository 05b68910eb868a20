// What the program knows as passwords, and the texts that it tells without them.
#include "support/FakeViews.h"
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "core/ResumeNext.h"
#include "core/Secrets.h"
#include "platform/RunTimeError.h"

class TestSecrets : public QObject
{
    Q_OBJECT

private slots:
    void init() { fixture = std::make_unique<Fixture>(); }
    void cleanup() { fixture.reset(); }
    void commandsWithAPassword_data();
    void commandsWithAPassword();
    void textsWithoutThePassword_data();
    void textsWithoutThePassword();
    void aShortPasswordIsMaskedWhereItStandsAlone();
    void whatTheLineMakesOfAPasswordIsMaskedToo();
    void beginningsOfAPasswordWaitForTheirRest_data();
    void beginningsOfAPasswordWaitForTheirRest();
    void theLogTellsNone();
    void anErrorReportTellsNone();
    void passwordsAreForgottenWithTheLog();

private:
    std::unique_ptr<Fixture> fixture;
};

void TestSecrets::commandsWithAPassword_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isOne");
    QTest::addRow("as sent") << QStringLiteral("PASSWORD hunter2\r") << true;
    QTest::addRow("any case") << QStringLiteral("Password hunter2") << true;
    QTest::addRow("without a blank") << QStringLiteral("PASSWORDhunter2") << true;
    QTest::addRow("in a second line") << QStringLiteral("*ID?\rPASSWORD hunter2\r") << true;
    QTest::addRow("empty") << QStringLiteral("PASSWORD \r") << true;
    QTest::addRow("the word alone") << QStringLiteral("PASSWORD") << true;
    QTest::addRow("another command") << QStringLiteral("*STEP 250\r") << false;
    QTest::addRow("nothing") << QString() << false;
}

void TestSecrets::commandsWithAPassword()
{
    QFETCH(const QString, text);
    QFETCH(const bool, isOne);
    QCOMPARE(secrets().noteCommand(text), isOne);
    QCOMPARE(secrets().occursIn(QStringLiteral("got HUNTER2")), text.contains("hunter2"));
}

void TestSecrets::textsWithoutThePassword_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *text, const char *shown) {
        QTest::addRow("%s", name) << QString::fromLatin1(text) << QString::fromLatin1(shown);
    };
    row("the command", " sending PASSWORD hunter2 to com port 3", " sending PASSWORD ****");
    row("one that was never sent", "password other", "PASSWORD ****");
    row("empty", " sending PASSWORD ", " sending PASSWORD ****");
    row("to the end of the line", "a PASSWORD b c\r\nd\nPASSWORD e\nf",
        "a PASSWORD ****\r\nd\nPASSWORD ****\nf");
    row("an echo", "<hunter2>", "<****>");
    row("inside a word, any case", "xHUNTER2y", "x****y");
    row("twice", "hunter2hunter2", "********");
    row("masked already", "PASSWORD ****", "PASSWORD ****");
    row("a part of it", "hunter", "hunter");
    row("the word without a blank", "PASSWORD: none", "PASSWORD: none");
    row("another text", "*STEP 250", "*STEP 250");
}

void TestSecrets::textsWithoutThePassword()
{
    QFETCH(const QString, text);
    QFETCH(const QString, shown);
    secrets().noteCommand(QStringLiteral("PASSWORD hunter2\r"));
    QCOMPARE(secrets().masked(text), shown);
    QCOMPARE(secrets().masked(shown), shown);
}

void TestSecrets::aShortPasswordIsMaskedWhereItStandsAlone()
{
    secrets().noteCommand(QStringLiteral("PASSWORD 12"));
    QCOMPARE(secrets().masked(QStringLiteral("*STEP 1250 <12> 12")),
             QStringLiteral("*STEP 1250 <****> ****"));
    for (const char *inAWord : {"x12", "12x", "x12 "})
        QCOMPARE(secrets().masked(QString::fromLatin1(inAWord)), QString::fromLatin1(inAWord));
    QCOMPARE(secrets().masked(QStringLiteral("12")), QStringLiteral("****"));
    // The longer one is not spoilt by the shorter.
    secrets().noteCommand(QStringLiteral("PASSWORD a 12 b"));
    QCOMPARE(secrets().masked(QStringLiteral("[a 12 b]")), QStringLiteral("[****]"));
}

void TestSecrets::whatTheLineMakesOfAPasswordIsMaskedToo()
{
    const QString typed = QStringLiteral("geheim") + QChar(0x20AC); // not in Latin-1
    secrets().noteCommand(QStringLiteral("PASSWORD ") + typed);
    QCOMPARE(secrets().masked(QStringLiteral("<geheim?> ") + typed), QStringLiteral("<****> ****"));
}

void TestSecrets::beginningsOfAPasswordWaitForTheirRest_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("unfinished");
    QTest::addRow("no beginning") << QStringLiteral("12.5 MHz") << 8;
    QTest::addRow("of the password") << QStringLiteral("got hun") << 4;
    QTest::addRow("the whole password") << QStringLiteral("got hunter2") << 11;
    QTest::addRow("of the word") << QStringLiteral("got PASSW") << 4;
    QTest::addRow("of the command's rest") << QStringLiteral("x PASSWORD se") << 2;
    QTest::addRow("of a command at the start") << QStringLiteral("PASSWORD se") << 0;
    QTest::addRow("of a line that has ended") << QStringLiteral("PASSWORD se\rab") << 14;
    QTest::addRow("nothing") << QString() << 0;
}

void TestSecrets::beginningsOfAPasswordWaitForTheirRest()
{
    QFETCH(const QString, text);
    QFETCH(const int, unfinished);
    QCOMPARE(secrets().unfinishedAt(text), text.size()); // without a password nothing waits
    secrets().noteCommand(QStringLiteral("PASSWORD hunter2"));
    QCOMPARE(secrets().unfinishedAt(text), qsizetype(unfinished));
}

void TestSecrets::theLogTellsNone()
{
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    logEvent(QStringLiteral("clsKeldoX"), QStringLiteral(" sending PASSWORD hunter2"));
    QCOMPARE(log->lines(), QStringList{QStringLiteral("clsKeldoX| sending PASSWORD ****")});
}

void TestSecrets::anErrorReportTellsNone()
{
    const auto log = std::make_shared<FakeLog>();
    installEventLog(log);
    secrets().noteCommand(QStringLiteral("PASSWORD hunter2"));
    fixture->boxes.acceptAll();
    reportAndEnd("x.y", [] { throw RunTimeError(13, QStringLiteral("no number: hunter2")); });
    const QString told = fixture->boxes.texts().join(QString()) + log->lines().join(QString());
    QCOMPARE(told.count(QStringLiteral("no number: ****")), 2);
    QVERIFY(!told.contains(QStringLiteral("hunter2")));
}

void TestSecrets::passwordsAreForgottenWithTheLog()
{
    secrets().noteCommand(QStringLiteral("PASSWORD hunter2"));
    installEventLog(std::make_shared<FakeLog>());
    QVERIFY(secrets().occursIn(QStringLiteral("hunter2")));
    installEventLog(nullptr);
    QVERIFY(!secrets().occursIn(QStringLiteral("hunter2")));
}

KELDOX_TEST(TestSecrets)
#include "TestSecrets.moc"
