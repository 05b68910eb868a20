// Files that are not as the program left them, or cannot be written: it starts, tunes, keeps what
// it can read and says what it could not save. And two programs at once.
#include "FaultBench.h"

#include "platform/Application.h"
#include "platform/SettingsStore.h"
#include "ui/monitor/frmIODaemon.h"

#include <QLockFile>
#include <QProcess>

#include <filesystem>

using namespace faults;

namespace {

QString settingsFile()
{
    return SettingsStore::location(applicationTitle());
}

QString settingsFolder()
{
    return QFileInfo(settingsFile()).absolutePath();
}

QString preset(int number)
{
    return SettingsStore::read(applicationTitle(), QStringLiteral("Settings"),
                               QStringLiteral("PresetFrequency %1").arg(number));
}

void clearSettings()
{
    std::error_code ignored;
    std::filesystem::remove_all(settingsFolder().toStdString(), ignored);
}

void write(const QByteArray &bytes)
{
    clearSettings();
    QVERIFY(QDir().mkpath(settingsFolder()));
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

void store(int presetNumber)
{
    auto *setPresets = control<QAbstractButton>(mainName, "cmdSetPresets");
    const QString name = QStringLiteral("cmdSetDUTFreq_%1").arg(presetNumber);
    setPresets->click();
    control<QAbstractButton>(mainName, qPrintable(name))->click();
    setPresets->click();
}

const QByteArray kept = "[Settings]\nPresetFrequency%205=\" 150\"\n";

} // namespace

class TestSettingsFiles : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void whatIsInIt_data();
    void whatIsInIt();
    void cannotBeWritten_data();
    void cannotBeWritten();
    void diskFullUnderTheLog();
    void twoPrograms();
    void theLogOfAnotherProgram();
};

void TestSettingsFiles::cleanup()
{
    clearSettings();
}

void TestSettingsFiles::whatIsInIt_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("readable"); // the stored preset is still to be found
    QByteArray noise(5000, Qt::Uninitialized);
    for (qsizetype i = 0; i < noise.size(); ++i)
        noise[i] = static_cast<char>(i * 7919 >> 3);
    QByteArray huge = kept;
    for (int i = 0; huge.size() < 3'000'000; ++i)
        huge += "Other" + QByteArray::number(i) + "=" + QByteArray(200, 'x') + '\n';
    QTest::addRow("whole") << kept << true;
    QTest::addRow("empty") << QByteArray() << false;
    QTest::addRow("broken") << noise << false;
    QTest::addRow("broken after it") << kept + noise << true;
    QTest::addRow("cut") << kept + "[Windows]\nmain=@ByteArr" << true;
    QTest::addRow("cut in it") << kept.left(kept.size() - 6) << false;
    QTest::addRow("huge") << huge << true;
    QTest::addRow("nonsense as values")
        << kept + "Reconnect=<b>\nPresetFrequency%206=1e999\n[Windows]\nmain=-1 x 99999999999\n"
        << true;
}

void TestSettingsFiles::whatIsInIt()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, readable);
    write(bytes);
    {
        FaultBench bench;
        const auto unit = std::make_shared<sim::SimulatedUnit>();
        bench.plug(5, unit);
        QVERIFY(window(mainName)->isVisible());
        search();
        seesConnected(5);
        if (readable) {
            control<QAbstractButton>(mainName, "cmdSetDUTFreq_5")->click();
            QCOMPARE(frequency(), QStringLiteral("150"));
        }
        tune(QStringLiteral("146.5"));
        QCOMPARE(unit->step(), 1860);
        store(4);
    }
    QCOMPARE(preset(4), QStringLiteral(" 146.5"));
    QCOMPARE(preset(5) == QStringLiteral(" 150"), readable);
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QVERIFY(!(QFile::permissions(settingsFile()) & others));
}

void TestSettingsFiles::cannotBeWritten_data()
{
    QTest::addColumn<int>("how");
    QTest::addRow("read-only") << 0;
    QTest::addRow("a folder in its place") << 1;
    QTest::addRow("a file in its folder's place") << 2;
    QTest::addRow("a folder where nobody can write") << 3;
}

void TestSettingsFiles::cannotBeWritten()
{
    QFETCH(const int, how);
    write(kept);
    if (how == 0)
        QVERIFY(QFile::setPermissions(settingsFile(), QFile::ReadOwner));
    else
        clearSettings();
    if (how == 1)
        QVERIFY(QDir().mkpath(settingsFile()));
    if (how == 2) {
        QFile inItsPlace(settingsFolder());
        QVERIFY(inItsPlace.open(QIODevice::WriteOnly));
    }
    if (how == 3)
        QVERIFY(QFile::link(QStringLiteral("/proc"), settingsFolder()));
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    bench.plug(5, unit);
    search();
    seesConnected(5);
    tune(QStringLiteral("146.5"));
    bench.boxes().acceptAll();
    store(4);
    const QStringList told = bench.boxes().texts();
    bench.boxes().clear();
    // Saved, or told: one of the two.
    QFile file(settingsFile());
    const bool saved = file.open(QIODevice::ReadOnly) && file.readAll().contains("146.5");
    QCOMPARE(told.isEmpty(), saved);
    QCOMPARE(told.isEmpty(), how == 0); // one's own file is made writable
    if (how != 0)
        QVERIFY2(told.join(QString()).contains(QStringLiteral("could not be saved in ") +
                                               settingsFile()),
                 qPrintable(told.join(QLatin1Char('|'))));
    else
        QCOMPARE(preset(5), QStringLiteral(" 150"));
    // The unit is not touched by it.
    seesConnected(5);
    tune(QStringLiteral("120"));
    QCOMPARE(unit->step(), 800);
}

static QString logFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/keldo-x");
}

void TestSettingsFiles::diskFullUnderTheLog()
{
    if (!QFileInfo::exists(QStringLiteral("/dev/full")))
        QSKIP("needs a device that is always full");
    FaultBench bench;
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    bench.plug(5, unit);
    search();
    const QString log = logFolder() + QStringLiteral("/Keldo-X.log");
    QFile::remove(log);
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), log));
    bench.boxes().expectStart(QStringLiteral("Error 75 "));
    trigger(monitorName, "mnuDebugLogging");
    tune(QStringLiteral("130"));
    QFile::remove(log);
    QVERIFY(bench.boxes().allShown()); // once
    QVERIFY(bench.boxes().texts().first().contains(QStringLiteral("No space left on device")));
    QVERIFY(
        !window(monitorName)->findChild<QAction *>(QStringLiteral("mnuDebugLogging"))->isChecked());
    QCOMPARE(unit->step(), 1200);
    QCOMPARE(frequency(), QStringLiteral("130"));
    tune(QStringLiteral("140"));
    const auto *monitor = qobject_cast<frmIODaemon *>(window(monitorName));
    QVERIFY(monitor->displayText().contains(QStringLiteral("sending *STEP 1600")));
    seesConnected(5);
}

// The second one is told who has the port, and leaves the first one's unit alone.
void TestSettingsFiles::twoPrograms()
{
    FaultBench bench;
    auto &taken = bench.plug(5);
    QProcess first;
    first.start(qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x"),
                {QStringLiteral("--connect"), QStringLiteral("COM5")});
    QVERIFY(first.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(sent(taken).contains(QStringLiteral("*STEP?")), 20'000);
    QTest::qWait(300); // its last readings
    taken.clearCommands();
    bench.boxes().expectStart(QStringLiteral("Check data and power connections"));
    search();
    seesNotConnected();
    const QString told = bench.boxes().shown().first().informative;
    QVERIFY2(told.contains(QStringLiteral("is in use by keldo-x (process %1). Close that program")
                               .arg(first.processId())),
             qPrintable(told));
    QVERIFY(taken.commands().empty());
    const auto unit = std::make_shared<sim::SimulatedUnit>();
    bench.plug(7, unit);
    search();
    seesConnected(7);
    tune(QStringLiteral("146.5"));
    store(4);
    QCOMPARE(unit->step(), 1860);
    QVERIFY(taken.commands().empty());
    first.terminate();
    QVERIFY(first.waitForFinished(10'000));
    QCOMPARE(preset(4), QStringLiteral(" 146.5")); // its end overwrites nothing
}

// It is neither erased nor written into.
void TestSettingsFiles::theLogOfAnotherProgram()
{
    const QString log = logFolder() + QStringLiteral("/Keldo-X.log");
    const QString own =
        logFolder() + QStringLiteral("/Keldo-X.%1.log").arg(QCoreApplication::applicationPid());
    QVERIFY(QDir().mkpath(logFolder()));
    QFile file(log);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("the other's") > 0);
    file.close();
    QLockFile lock(log + QStringLiteral(".lock"));
    QVERIFY(lock.tryLock(0));
    FaultBench bench;
    bench.plug(5);
    search();
    trigger(monitorName, "mnuDebugLogging");
    tune(QStringLiteral("130"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("the other's"));
    QFile ownFile(own);
    QVERIFY(ownFile.open(QIODevice::ReadOnly));
    QVERIFY(ownFile.readAll().contains("sending *STEP 1200"));
    trigger(monitorName, "mnuDebugLogging");
    QFile::remove(log);
    QFile::remove(own);
}

KELDOX_TEST(TestSettingsFiles)
#include "TestSettingsFiles.moc"
