// The real program with "--simulator", in a process of its own: it finds and connects units that it
// has started itself, and leaves none of their processes behind, however it ends.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include <QProcess>

#include <csignal>
#include <filesystem>

class TestSimulatorOption : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aSearchFindsAndConnectsItsUnits();
    void aPortIsConnectedByItsNumber();
    void aSharedLineIsThereToo();
    void itEndsItsUnits_data();
    void itEndsItsUnits();
    void itEndsWhileItWaitsForTheList();
    void withoutTheSimulatorItSaysSo();

private:
    void serveBesideTheProgram();
    void start(const QStringList &words);
    bool wasSent(const QByteArray &command) const;
    QStringList serving() const; // the processes of the units

    std::unique_ptr<Fixture> m_fixture;
    std::unique_ptr<QTemporaryDir> m_folder; // a folder for the program that has no simulator yet
    std::unique_ptr<QProcess> m_program;
};

static QString built(const char *program)
{
    return qEnvironmentVariable("KELDOX_BIN_DIR") + QLatin1Char('/') + QLatin1String(program);
}

void TestSimulatorOption::init()
{
    m_fixture = std::make_unique<Fixture>();
    m_folder = std::make_unique<QTemporaryDir>(built("simulator-XXXXXX"));
    std::filesystem::create_hard_link(built("keldo-x").toStdString(),
                                      m_folder->filePath(QStringLiteral("keldo-x")).toStdString());
    m_program = std::make_unique<QProcess>();
}

void TestSimulatorOption::cleanup()
{
    if (m_program->state() != QProcess::NotRunning) {
        m_program->kill();
        m_program->waitForFinished();
    }
    m_program.reset();
    m_folder.reset();
    m_fixture.reset();
}

// The real simulator; what it is sent stands in a file, and so do its processes.
void TestSimulatorOption::serveBesideTheProgram()
{
    QFile script(m_folder->filePath(QStringLiteral("keldo-x-sim")));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\necho $$ >>'" + m_folder->filePath(QStringLiteral("units")).toUtf8() +
                 "'\nexec '" + built("keldo-x-sim").toUtf8() + "' --log \"$@\" 2>>'" +
                 m_folder->filePath(QStringLiteral("log")).toUtf8() + "'\n");
    script.setPermissions(script.permissions() | QFile::ExeUser);
}

void TestSimulatorOption::start(const QStringList &words)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
    m_program->setProcessEnvironment(environment);
    m_program->start(m_folder->filePath(QStringLiteral("keldo-x")),
                     words + QStringList{QStringLiteral("--simulator")});
    QVERIFY(m_program->waitForStarted());
}

static QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool TestSimulatorOption::wasSent(const QByteArray &command) const
{
    return contents(m_folder->filePath(QStringLiteral("log"))).contains("-> " + command + '\n');
}

QStringList TestSimulatorOption::serving() const
{
    QStringList running;
    const auto units = contents(m_folder->filePath(QStringLiteral("units"))).split('\n');
    for (const QByteArray &unit : units) {
        const QByteArray words =
            contents(QStringLiteral("/proc/%1/cmdline").arg(QString::fromLatin1(unit)));
        if (!unit.isEmpty() && words.contains("keldo-x-sim"))
            running.append(QString::fromLatin1(unit));
    }
    return running;
}

void TestSimulatorOption::aSearchFindsAndConnectsItsUnits()
{
    serveBesideTheProgram();
    start({QStringLiteral("--search")});
    QTRY_VERIFY_WITH_TIMEOUT(wasSent("InputLimitMode?"), 60000); // the last reading of a unit
    QTRY_COMPARE_WITH_TIMEOUT(serving().size(), 3, 10000);
    QCOMPARE(m_program->state(), QProcess::Running);
}

void TestSimulatorOption::aPortIsConnectedByItsNumber()
{
    serveBesideTheProgram();
    start({QStringLiteral("--connect"), QStringLiteral("COM4")});
    QTRY_VERIFY_WITH_TIMEOUT(wasSent("InputLimitMode?"), 20000);
    QCOMPARE(serving().size(), 1); // those that nobody asked for are not started
}

void TestSimulatorOption::aSharedLineIsThereToo()
{
    serveBesideTheProgram();
    start({QStringLiteral("--connect"), QStringLiteral("COM5:5")});
    QTRY_VERIFY_WITH_TIMEOUT(wasSent("InputLimitMode?"), 20000);
    QVERIFY(wasSent(">LISTEN05"));
}

void TestSimulatorOption::itEndsItsUnits_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGKILL") << SIGKILL;
}

void TestSimulatorOption::itEndsItsUnits()
{
    QFETCH(const int, number);
    serveBesideTheProgram();
    start({QStringLiteral("--connect"), QStringLiteral("COM3")});
    QTRY_VERIFY_WITH_TIMEOUT(wasSent("*STEP?"), 20000);
    QCOMPARE(serving().size(), 1);
    ::kill(static_cast<pid_t>(m_program->processId()), number);
    QVERIFY(m_program->waitForFinished(10000));
    QCOMPARE(m_program->exitStatus() == QProcess::CrashExit, number == SIGKILL);
    QTRY_COMPARE_WITH_TIMEOUT(serving(), QStringList(), 5000);
    const QByteArray told = m_program->readAllStandardError();
    QVERIFY2(!told.contains("QProcess"), told.constData());
}

void TestSimulatorOption::itEndsWhileItWaitsForTheList()
{
    QFile script(m_folder->filePath(QStringLiteral("keldo-x-sim")));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\necho asked >&2\nexec sleep 60\n");
    script.setPermissions(script.permissions() | QFile::ExeUser);
    script.close();
    start({});
    QByteArray told;
    QTRY_VERIFY_WITH_TIMEOUT((told += m_program->readAllStandardError(), told.contains("asked")),
                             20000);
    m_program->terminate();
    QVERIFY(m_program->waitForFinished(10000));
    QCOMPARE(m_program->exitCode(), 0);
    QVERIFY(!m_program->readAllStandardError().contains("keldo-x:"));
}

void TestSimulatorOption::withoutTheSimulatorItSaysSo()
{
    start({});
    QByteArray told;
    QTRY_VERIFY2_WITH_TIMEOUT(
        (told += m_program->readAllStandardError(),
         told.contains("keldo-x: The program keldo-x-sim is neither beside this one nor")),
        told.constData(), 20000);
    m_program->terminate(); // the box with the same text falls through
    QVERIFY(m_program->waitForFinished(10000));
    QCOMPARE(m_program->exitCode(), 1);
}

KELDOX_TEST(TestSimulatorOption)
#include "TestSimulatorOption.moc"
