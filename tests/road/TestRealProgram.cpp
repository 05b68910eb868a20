// The real program, in a process of its own, against a simulated unit: it is started with a place,
// tunes nothing of its own, and a polite signal ends it with its port free, whatever it waits for.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/Application.h"
#include "platform/SettingsStore.h"
#include "sim/SimulatedLine.h"

#include <QProcess>
#include <QSerialPort>

#include <csignal>

Q_DECLARE_METATYPE(sim::Fault)

class TestRealProgram : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aSignalEndsItWithThePortFree_data();
    void aSignalEndsItWithThePortFree();
    void itConnectsTheUnitThatItIsStartedWith();
    void reconnectingIsKeptOverARestart();

private:
    void start(const QStringList &words);
    bool asked(const std::string &command) const;

    std::unique_ptr<Fixture> m_fixture;
    std::unique_ptr<sim::SimulatedLine> m_line;
    std::unique_ptr<QProcess> m_program;
};

void TestRealProgram::init()
{
    m_fixture = std::make_unique<Fixture>();
    m_line = std::make_unique<sim::SimulatedLine>();
    m_line->addUnit(std::make_shared<sim::SimulatedUnit>());
    m_fixture->plug(5, m_line->device());
    m_program = std::make_unique<QProcess>();
}

void TestRealProgram::cleanup()
{
    if (m_program->state() != QProcess::NotRunning) {
        m_program->kill();
        m_program->waitForFinished();
    }
    m_program.reset();
    m_line.reset();
    m_fixture.reset();
}

void TestRealProgram::start(const QStringList &words)
{
    m_program->start(qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x"), words);
    QVERIFY(m_program->waitForStarted());
}

bool TestRealProgram::asked(const std::string &command) const
{
    const auto all = m_line->commands();
    return std::find(all.begin(), all.end(), command) != all.end();
}

void TestRealProgram::aSignalEndsItWithThePortFree_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<sim::Fault>("fault");
    QTest::addColumn<QString>("until"); // the command in whose wait, or after which, it is ended
    QTest::addRow("connected, SIGTERM") << SIGTERM << sim::Fault::None << QStringLiteral("*STEP?");
    QTest::addRow("connected, SIGINT") << SIGINT << sim::Fault::None << QStringLiteral("*STEP?");
    QTest::addRow("connected, SIGHUP") << SIGHUP << sim::Fault::None << QStringLiteral("*STEP?");
    QTest::addRow("search, SIGTERM") << SIGTERM << sim::Fault::Silence << QStringLiteral("*ID?");
}

void TestRealProgram::aSignalEndsItWithThePortFree()
{
    QFETCH(const int, number);
    QFETCH(const sim::Fault, fault);
    QFETCH(const QString, until);
    m_line->setFault(fault);
    start({QStringLiteral("--search")});
    QTRY_VERIFY_WITH_TIMEOUT(asked(until.toStdString()), 20000);
    ::kill(static_cast<pid_t>(m_program->processId()), number);
    QVERIFY(m_program->waitForFinished(10000));
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 0);
    QSerialPort port(QString::fromStdString(m_line->device()));
    QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
}

void TestRealProgram::itConnectsTheUnitThatItIsStartedWith()
{
    start({QStringLiteral("--connect"), QStringLiteral("COM5")});
    QTRY_VERIFY_WITH_TIMEOUT(asked("*STEP?"), 20000);
    for (const std::string &command : m_line->commands())
        QVERIFY2(command.rfind("*STEP ", 0) != 0, command.c_str()); // it tunes nothing by itself
}

void TestRealProgram::reconnectingIsKeptOverARestart()
{
    const auto keep = [](const char *value) {
        SettingsStore::write(applicationTitle(), QStringLiteral("Settings"),
                             QStringLiteral("Reconnect"), QString::fromLatin1(value));
    };
    keep("1");
    start({QStringLiteral("--connect"), QStringLiteral("COM5")});
    QTRY_VERIFY_WITH_TIMEOUT(asked("*STEP?"), 20000);
    QTest::qWait(300); // its last readings
    m_line->unplug();
    m_line->clearCommands();
    auto again = std::make_unique<sim::SimulatedLine>();
    again->addUnit(std::make_shared<sim::SimulatedUnit>());
    m_fixture->plug(5, again->device());
    QTRY_VERIFY_WITH_TIMEOUT(!again->commands().empty(), 15000);
    m_program->kill();
    m_program->waitForFinished();
    keep("0");
}

KELDOX_TEST(TestRealProgram)
#include "TestRealProgram.moc"
