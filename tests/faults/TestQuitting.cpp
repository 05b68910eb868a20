// The program is ended in every state: in each wait, each box and each window. It is gone at once,
// its port is free, nothing is sent any more and what was stored is kept.
#include "FaultBench.h"

#include "app/PoliteEnd.h"
#include "platform/Application.h"
#include "platform/SettingsStore.h"

#include <QProcess>
#include <QSerialPort>

#include <csignal>

using namespace faults;

namespace {

using State = std::function<void(FaultBench &)>; // returns once the program is ending

// As the end of a desktop session asks for it: also where a box stands before the main window.
void askToEnd()
{
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
}

void silence(FaultBench &bench)
{
    bench.line(5).setFault(sim::Fault::Silence);
}

struct Row
{
    const char *name;
    State state;
};

const QList<Row> &waits()
{
    static const QList<Row> all = {
        {"wait for a tuning", [](FaultBench &b) { silence(b), tune(QStringLiteral("130")); }},
        {"wait for a level",
         [](FaultBench &b) {
             silence(b);
             typeInto(box(channelsName, "txtChanAtten_1"), QStringLiteral("10"));
         }},
        {"wait for a switch",
         [](FaultBench &b) {
             silence(b);
             control<QCheckBox>(channelsName, "chkChanAGC_1")->click();
         }},
        {"wait for fine tuning",
         [](FaultBench &b) {
             silence(b);
             typeInto(box(mainName, "txtPelltrim"), QStringLiteral("140"));
         }},
        {"wait of reading again", [](FaultBench &b) { silence(b), readAgain(); }},
        {"wait of a poll",
         [](FaultBench &b) {
             silence(b);
             TestHooks::shortenTimers(5000);
             trigger(mainName, "mnuEnablePolling");
             static_cast<void>(turnUntil([] { return EventQueue::ending(); }));
         }},
        {"wait of a connection", [](FaultBench &b) { silence(b), choose(1); }},
        {"wait of a search", [](FaultBench &b) { silence(b), search(); }},
    };
    return all;
}

const QList<Row> &boxesAndWindows()
{
    static const auto idle = [](FaultBench &) {
        static_cast<void>(turnUntil([] { return EventQueue::ending(); }));
    };
    static const auto with = [](const char *entry) {
        return [entry](FaultBench &b) {
            trigger(mainName, entry);
            idle(b);
        };
    };
    static const QList<Row> all = {
        {"message box",
         [](FaultBench &) {
             TestHooks::answerBoxes({}); // the real one
             tune(QStringLiteral("999"));
         }},
        {"password box",
         [](FaultBench &b) {
             b.line(5).setFault(sim::Fault::PermissionDenied);
             tune(QStringLiteral("130"));
         }},
        {"input box", with("mnuPollingInterval")},
        {"connect dialog", with("mnuConnectKnownComport")},
        {"about", with("mnuHelpAbout")},
        {"main window", idle},
        {"IO monitor", with("mnuOptionsIOdaemon")},
        {"channels window", with("mnuShowChannels")},
        {"operation", with("mnuHelpContents")},
        {"contact", with("mnuHelpContact")},
        {"monitor with a log file",
         [](FaultBench &b) {
             trigger(monitorName, "mnuDebugLogging");
             idle(b);
         }},
    };
    return all;
}

const Row &row(int index)
{
    return index < waits().size() ? waits().at(index)
                                  : boxesAndWindows().at(index - waits().size());
}

} // namespace

class TestQuitting : public QObject
{
    Q_OBJECT

private slots:
    void inEveryState_data();
    void inEveryState();
    void theRealProgramInAWait();
};

void TestQuitting::inEveryState_data()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < waits().size() + boxesAndWindows().size(); ++index)
        QTest::addRow("%s", row(index).name) << index;
}

void TestQuitting::inEveryState()
{
    QFETCH(const int, index);
    FaultBench bench;
    const PoliteEnd politeEnd;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    bench.plug(5, unit);
    search();
    seesConnected(5);
    auto *setPresets = control<QAbstractButton>(mainName, "cmdSetPresets");
    tune(QStringLiteral("146.5"));
    setPresets->click();
    control<QAbstractButton>(mainName, "cmdSetDUTFreq_4")->click();
    setPresets->click();
    bench.line(5).clearCommands();
    QElapsedTimer since;
    QStringList before;
    QTimer::singleShot(150, this, [&] {
        before = sent(bench.line(5));
        since.start();
        askToEnd();
    });
    row(index).state(bench);
    QVERIFY(EventQueue::ending());
    QVERIFY2(since.elapsed() < 1500, qPrintable(QString::number(since.elapsed())));
    for (const QWidget *top : QApplication::topLevelWidgets())
        QVERIFY2(!top->isVisible(), qPrintable(top->objectName()));
    QCOMPARE(sent(bench.line(5)), before);
    QVERIFY2(before.size() <= 1, qPrintable(before.join(QStringLiteral(", "))));
    resetAppState(); // as main() does
    QSerialPort port(QString::fromStdString(bench.line(5).device()));
    QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
    QCOMPARE(SettingsStore::read(applicationTitle(), QStringLiteral("Settings"),
                                 QStringLiteral("PresetFrequency 4")),
             QStringLiteral(" 146.5"));
}

// In a process of its own: it ends well, and nothing that it was about to send is sent.
void TestQuitting::theRealProgramInAWait()
{
    FaultBench bench;
    auto &line = bench.plug(5);
    line.setFault(sim::Fault::Silence, "*REVISION?");
    QProcess program;
    program.start(qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x"),
                  {QStringLiteral("--connect"), QStringLiteral("COM5")});
    QVERIFY(program.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(sent(line).contains(QStringLiteral("*REVISION?")), 20'000);
    const QStringList before = sent(line);
    ::kill(static_cast<pid_t>(program.processId()), SIGTERM);
    QVERIFY(program.waitForFinished(10'000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(sent(line), before);
    QSerialPort port(QString::fromStdString(line.device()));
    QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
}

KELDOX_TEST(TestQuitting)
#include "TestQuitting.moc"
