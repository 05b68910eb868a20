// keldo-x-sim on its standard streams, as a program starts it: it answers, ends with its input or
// by an unplug, and outlives the Ctrl-C that was meant for others.
#include "support/TestMain.h"

#include <QProcess>

#include <csignal>

class TestStandardStreams : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theLinesAreListed_data();
    void theLinesAreListed();
    void theChosenLineAnswers();
    void bytesPassAsTheyAre();
    void commandsInOneWriteAndInPieces();
    void aPacedReplyTakesItsTime();
    void theEndOfTheInputEndsIt();
    void theEndOfTheInputEndsItWhileNobodyReads();
    void aReaderThatIsGoneEndsIt();
    void anUnplugEndsIt();
    void keysOfTheTerminalDoNotEndIt();
    void theLogStandsOnStandardError();
    void aWrongNumberIsAnError();

private:
    void start(const QStringList &words);
    QByteArray answerTo(const QByteArray &command, const QByteArray &end = "\r");

    std::unique_ptr<QProcess> m_process;
};

void TestStandardStreams::init()
{
    m_process = std::make_unique<QProcess>();
    m_process->setProgram(qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x-sim"));
}

void TestStandardStreams::cleanup()
{
    if (m_process->state() != QProcess::NotRunning) {
        m_process->kill();
        m_process->waitForFinished();
    }
    m_process.reset();
}

void TestStandardStreams::start(const QStringList &words)
{
    m_process->setArguments(words);
    m_process->start();
    QVERIFY(m_process->waitForStarted());
}

QByteArray TestStandardStreams::answerTo(const QByteArray &command, const QByteArray &end)
{
    m_process->write(command);
    QByteArray answer;
    while (!answer.endsWith(end) && m_process->waitForReadyRead(5000))
        answer += m_process->readAllStandardOutput();
    return answer;
}

static QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

void TestStandardStreams::theLinesAreListed_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("default") << words("--list")
                             << QByteArray("1  KELDO-X firmware 3.38\n2  KELDO-X firmware 3.38\n"
                                           "3  TOVIN-R firmware 3.38 addresses 2 5\n");
    QTest::newRow("described") << words("--list --line firmware=3.17 --line fault=silence")
                               << QByteArray("1  KELDO-X firmware 3.17\n"
                                             "2  KELDO-X firmware 3.38, fault silence\n");
}

void TestStandardStreams::theLinesAreListed()
{
    QFETCH(const QStringList, options);
    start(options);
    QVERIFY(m_process->waitForFinished());
    QCOMPARE(m_process->exitCode(), 0);
    QTEST(m_process->readAllStandardOutput(), "list");
}

void TestStandardStreams::theChosenLineAnswers()
{
    start(words("--stdio 3"));
    QCOMPARE(answerTo(">LISTEN05\r"), QByteArray("LISTENING\r"));
    QCOMPARE(answerTo("*ID?\r"), QByteArray("TOVIN-R\r"));
}

void TestStandardStreams::bytesPassAsTheyAre()
{
    start(words("--stdio 1 --terminator crlf --fault binary:*STEP"));
    QCOMPARE(answerTo("*ID?\r", "\n"), QByteArray("KELDO-X\r\n"));
    QCOMPARE(answerTo("*STEP?\r", "\n"), QByteArray("\x00\x80\xff\x01\xfe\x7f\x00\xc3\r\n", 10));
}

void TestStandardStreams::commandsInOneWriteAndInPieces()
{
    start(words("--stdio 1"));
    QCOMPARE(answerTo("*ID?\r*STEP 12\r*STEP?\r", "12\r"), QByteArray("KELDO-X\rLOCKED\r12\r"));
    m_process->write("*ST");
    QVERIFY(!m_process->waitForReadyRead(100));
    QCOMPARE(answerTo("EP?\r"), QByteArray("12\r"));
}

void TestStandardStreams::aPacedReplyTakesItsTime()
{
    start(words("--stdio 1 --paced"));
    answerTo("*ID?\r");
    QElapsedTimer time;
    time.start();
    const QByteArray answer = answerTo("*REVISION?\r");
    // A byte less: what follows a reply at once counts as sent at its end.
    const qint64 bytes = answer.size() + 11 - 1;
    QVERIFY2(time.nsecsElapsed() >= bytes * 10 * 1'000'000'000 / 19200,
             qPrintable(QString::number(time.nsecsElapsed())));
}

void TestStandardStreams::theEndOfTheInputEndsIt()
{
    start(words("--stdio 1"));
    QCOMPARE(answerTo("*ID?\r"), QByteArray("KELDO-X\r"));
    m_process->closeWriteChannel();
    QVERIFY(m_process->waitForFinished(5000));
    QCOMPARE(m_process->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_process->exitCode(), 0);
}

// The pipe to a reader that takes nothing is full; the writing thread hangs in it.
void TestStandardStreams::theEndOfTheInputEndsItWhileNobodyReads()
{
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("(yes '*ID?' | tr '\\n' '\\r' | head -c 200000; echo sent >&2) | "
                                "(\"$0\" --stdio 1; echo $? >&2) | sleep 3"),
                 m_process->program()});
    QByteArray told;
    QElapsedTimer time;
    time.start();
    while (!told.endsWith("sent\n0\n") && time.elapsed() < 2500) {
        shell.waitForReadyRead(100);
        told += shell.readAllStandardError();
    }
    QCOMPARE(told, QByteArray("sent\n0\n"));
    QVERIFY(shell.waitForFinished());
}

void TestStandardStreams::aReaderThatIsGoneEndsIt()
{
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("\"$0\" --stdio 1 --fault endless | head -c 10"),
                 m_process->program()});
    shell.write("*ID?\r");
    QVERIFY(shell.waitForFinished(5000)); // though its input is still open
    QCOMPARE(shell.readAllStandardOutput(), QByteArray("**********"));
}

void TestStandardStreams::anUnplugEndsIt()
{
    start(words("--stdio 1 --fault unplug:*STEP"));
    QCOMPARE(answerTo("*ID?\r"), QByteArray("KELDO-X\r"));
    m_process->write("*STEP?\r");
    QVERIFY(m_process->waitForFinished(5000));
    QCOMPARE(m_process->readAllStandardOutput(), QByteArray());
}

void TestStandardStreams::keysOfTheTerminalDoNotEndIt()
{
    start(words("--stdio 1"));
    QCOMPARE(answerTo("*ID?\r"), QByteArray("KELDO-X\r"));
    for (const int signal : {SIGINT, SIGHUP})
        ::kill(static_cast<pid_t>(m_process->processId()), signal);
    QCOMPARE(answerTo("*ID?\r"), QByteArray("KELDO-X\r"));
    m_process->terminate();
    QVERIFY(m_process->waitForFinished(5000));
}

void TestStandardStreams::theLogStandsOnStandardError()
{
    start(words("--stdio 1 --log"));
    QCOMPARE(answerTo("*ID?\r"), QByteArray("KELDO-X\r"));
    m_process->closeWriteChannel();
    QVERIFY(m_process->waitForFinished());
    QCOMPARE(m_process->readAllStandardError(), QByteArray("-> *ID?\n   <- KELDO-X\n"));
}

void TestStandardStreams::aWrongNumberIsAnError()
{
    start(words("--stdio 4"));
    QVERIFY(m_process->waitForFinished());
    QCOMPARE(m_process->exitCode(), 2);
    QCOMPARE(m_process->readAllStandardError(),
             QByteArray("keldo-x-sim: stdio must be a number from 1 to 3, not \"4\"\n"));
}

KELDOX_TEST(TestStandardStreams)
#include "TestStandardStreams.moc"
