// keldo-x-sim as the user runs it: its lines, its links, its options and its end.
#include "TerminalPeer.h"

#include "support/TestMain.h"

#include <QProcess>

#include <csignal>

class TestSimulatorProcess : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void defaultLines();
    void linesAnswerThroughTheirLinks();
    void numbersAndFirstNumber();
    void lineDescriptions();
    void endsOnSignals_data();
    void endsOnSignals();
    void killedSimulatorsLinksAreRemoved();
    void takenNumberIsAnError();
    void twoSimulatorsShareTheNumbers();
    void logShowsTheExchange();
    void quietListsNothing();
    void helpTellsAll();
    void badOptions_data();
    void badOptions();

private:
    QString program() const;
    void prepare(QProcess &process) const;
    bool start(QProcess &process, const QStringList &arguments, int lines);
    QString link(int number) const;
    QStringList links() const;
    static bool end(QProcess &process, int signal);

    std::unique_ptr<QTemporaryDir> mHome;
    QStringList mOutput; // the lines that start() waited for
};

QString TestSimulatorProcess::program() const
{
    return qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x-sim");
}

void TestSimulatorProcess::initTestCase()
{
    QVERIFY2(QFileInfo(program()).isExecutable(), qPrintable(program()));
}

void TestSimulatorProcess::init()
{
    mHome = std::make_unique<QTemporaryDir>();
    mOutput.clear();
}

void TestSimulatorProcess::cleanup()
{
    mHome.reset();
}

void TestSimulatorProcess::prepare(QProcess &process) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DATA_HOME"), mHome->path());
    process.setProcessEnvironment(environment);
    process.setProgram(program());
}

// Starts the simulator and waits until it has listed so many lines.
bool TestSimulatorProcess::start(QProcess &process, const QStringList &arguments, int lines)
{
    prepare(process);
    process.setArguments(arguments);
    process.start();
    if (!process.waitForStarted())
        return false;
    mOutput.clear();
    while (mOutput.size() < lines) {
        if (!process.canReadLine() && !process.waitForReadyRead(10'000))
            return false;
        while (process.canReadLine() && mOutput.size() < lines)
            mOutput.append(QString::fromUtf8(process.readLine()).trimmed());
    }
    return true;
}

QString TestSimulatorProcess::link(int number) const
{
    return mHome->filePath(QStringLiteral("keldo-x/ports/com%1").arg(number));
}

QStringList TestSimulatorProcess::links() const
{
    return QDir(mHome->filePath(QStringLiteral("keldo-x/ports")))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

bool TestSimulatorProcess::end(QProcess &process, int signal)
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
    return process.waitForFinished(10'000);
}

void TestSimulatorProcess::defaultLines()
{
    QProcess process;
    QVERIFY(start(process, {}, 3));
    const QRegularExpression pattern(QStringLiteral("^COM(\\d)  (.*)  \\(/dev/[^ ]+\\)$"));
    QStringList found;
    for (const QString &line : std::as_const(mOutput)) {
        const auto match = pattern.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        found.append(match.captured(1) + QLatin1Char(' ') + match.captured(2));
    }
    QCOMPARE(found, (QStringList{QStringLiteral("3 KELDO-X firmware 3.38"),
                                 QStringLiteral("4 KELDO-X firmware 3.38"),
                                 QStringLiteral("5 TOVIN-R firmware 3.38 addresses 2 5")}));
    QVERIFY(end(process, SIGTERM));
}

void TestSimulatorProcess::linesAnswerThroughTheirLinks()
{
    QProcess process;
    QVERIFY(start(process, {}, 3));
    TerminalPeer single(link(3).toStdString());
    QCOMPARE(single.exchange("*ID?"), std::string("KELDO-X\r"));
    TerminalPeer shared(link(5).toStdString());
    QCOMPARE(shared.exchange(">LISTEN05"), std::string("LISTENING\r"));
    QCOMPARE(shared.exchange("*ID?"), std::string("TOVIN-R\r"));
    QVERIFY(end(process, SIGTERM));
    QVERIFY(single.waitForHangUp());
}

void TestSimulatorProcess::numbersAndFirstNumber()
{
    QProcess process;
    QVERIFY(start(process,
                  {QStringLiteral("--lines"), QStringLiteral("3"), QStringLiteral("--com"),
                   QStringLiteral("20"), QStringLiteral("--com"), QStringLiteral("10"),
                   QStringLiteral("--first"), QStringLiteral("10")},
                  3));
    QCOMPARE(links(), (QStringList{QStringLiteral("com10"), QStringLiteral("com11"),
                                   QStringLiteral("com20")}));
    QVERIFY(mOutput.at(0).startsWith(QStringLiteral("COM20 ")));
    QVERIFY(mOutput.at(2).startsWith(QStringLiteral("COM11 ")));
    QVERIFY(end(process, SIGTERM));
}

void TestSimulatorProcess::lineDescriptions()
{
    QProcess process;
    QVERIFY(start(process,
                  {QStringLiteral("--firmware"), QStringLiteral("3.17"), QStringLiteral("--line"),
                   QStringLiteral("com=9,password=pw"), QStringLiteral("--line"),
                   QStringLiteral("firmware=1.6,start=70")},
                  2));
    TerminalPeer first(link(9).toStdString());
    QCOMPARE(first.exchange("*REVISION?"), std::string("KELDO-X REV 3.17\r"));
    QCOMPARE(first.exchange("*STEP 1"), std::string("PERMISSION DENIED\r"));
    TerminalPeer second(link(3).toStdString());
    QCOMPARE(second.exchange("*REVISION?"), std::string("KELDO-X REV  1.6\r"));
    QCOMPARE(second.exchange("*START FREQ?"), std::string("70 MHz\r"));
    QCOMPARE(second.exchange("*STEP 1"), std::string("LOCKED\r"));
    QVERIFY(end(process, SIGTERM));
}

void TestSimulatorProcess::endsOnSignals_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("terminate") << SIGTERM;
    QTest::newRow("terminal closed") << SIGHUP;
}

void TestSimulatorProcess::endsOnSignals()
{
    QFETCH(int, signal);
    QProcess process;
    QVERIFY(start(process, {}, 3));
    QCOMPARE(links().size(), 3);
    QVERIFY(end(process, signal));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(links(), QStringList());
}

void TestSimulatorProcess::killedSimulatorsLinksAreRemoved()
{
    QProcess killed;
    QVERIFY(start(killed, {QStringLiteral("--lines"), QStringLiteral("4")}, 4));
    QVERIFY(end(killed, SIGKILL));
    QCOMPARE(links().size(), 4);
    QProcess next;
    QVERIFY(start(next, {QStringLiteral("--lines"), QStringLiteral("1")}, 1));
    QCOMPARE(links(), QStringList{QStringLiteral("com3")});
    TerminalPeer peer(link(3).toStdString());
    QCOMPARE(peer.exchange("*ID?"), std::string("KELDO-X\r"));
    QVERIFY(end(next, SIGTERM));
}

void TestSimulatorProcess::takenNumberIsAnError()
{
    QProcess first;
    QVERIFY(start(first,
                  {QStringLiteral("--com"), QStringLiteral("8"), QStringLiteral("--lines"),
                   QStringLiteral("1")},
                  1));
    QProcess second;
    prepare(second);
    second.setArguments({QStringLiteral("--lines"), QStringLiteral("2"), QStringLiteral("--com"),
                         QStringLiteral("7"), QStringLiteral("--com"), QStringLiteral("8")});
    second.start();
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 1);
    QVERIFY(second.readAllStandardError().contains("com8"));
    QCOMPARE(links(), QStringList{QStringLiteral("com8")});
    QVERIFY(end(first, SIGTERM));
}

void TestSimulatorProcess::twoSimulatorsShareTheNumbers()
{
    QProcess first;
    QProcess second;
    QVERIFY(start(first, {QStringLiteral("--lines"), QStringLiteral("2")}, 2));
    QVERIFY(start(second, {QStringLiteral("--lines"), QStringLiteral("2")}, 2));
    QVERIFY(mOutput.at(1).startsWith(QStringLiteral("COM6 ")));
    QCOMPARE(links().size(), 4);
    QVERIFY(end(first, SIGTERM));
    QCOMPARE(links(), (QStringList{QStringLiteral("com5"), QStringLiteral("com6")}));
    QVERIFY(end(second, SIGTERM));
}

void TestSimulatorProcess::logShowsTheExchange()
{
    QProcess process;
    QVERIFY(start(
        process,
        {QStringLiteral("--log"), QStringLiteral("--fault"), QStringLiteral("binary:*STEP")}, 1));
    TerminalPeer peer(link(3).toStdString());
    peer.exchange("*ID?");
    peer.exchange("*STEP?");
    QByteArray shown;
    QTRY_VERIFY((process.waitForReadyRead(10), shown += process.readAllStandardOutput(),
                 shown.count('\n') == 4));
    QCOMPARE(shown, QByteArray("COM3 -> *ID?\nCOM3    <- KELDO-X\nCOM3 -> *STEP?\n"
                               "COM3    <- \\x00\\x80\\xff\\x01\\xfe\\x7f\\x00\\xc3\n"));
    QVERIFY(end(process, SIGTERM));
}

void TestSimulatorProcess::quietListsNothing()
{
    QProcess process;
    QVERIFY(start(process, {QStringLiteral("--quiet")}, 0));
    QTRY_COMPARE(links().size(), 3);
    QVERIFY(end(process, SIGTERM));
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
}

void TestSimulatorProcess::helpTellsAll()
{
    QProcess process;
    prepare(process);
    process.setArguments({QStringLiteral("--help")});
    process.start();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    const QByteArray help = process.readAllStandardOutput();
    for (const char *const word :
         {"--lines", "--line ", "--kind",       "--addresses",     "--firmware", "--without",
          "--aopt",  "--copt",  "--password",   "--start",         "--spacing",  "--max-step",
          "--com",   "--first", "--paced",      "--fault",         "--log",      "--list",
          "--stdio", "--quiet", "--terminator", "wrong-unit-word", "Examples"})
        QVERIFY2(help.contains(word), word);
    QCOMPARE(links(), QStringList());
}

void TestSimulatorProcess::badOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("named");
    const auto row = [](const char *arguments, const char *named) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char(' '))
                                 << QByteArray(named);
    };
    row("--bogus", "bogus");
    row("extra", "extra");
    row("--lines 0", "lines");
    row("--lines many", "many");
    row("--kind keldo", "keldo");
    row("--line kind=x", "kind");
    row("--com 256 --lines 1", "com");
    row("--com 4 --com 5 --lines 1", "more COM numbers than lines");
    row("--com 4 --line com=4 --line paced", "twice");
    row("--fault nothing", "nothing");
    row("--first 0", "first");
    row("--firmware", "firmware");
}

void TestSimulatorProcess::badOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, named);
    QProcess process;
    prepare(process);
    process.setArguments(arguments);
    process.start();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    const QByteArray error = process.readAllStandardError();
    QVERIFY2(error.startsWith("keldo-x-sim: ") && error.contains(named), error.constData());
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QCOMPARE(links(), QStringList());
}

KELDOX_TEST(TestSimulatorProcess)
#include "TestSimulatorProcess.moc"
