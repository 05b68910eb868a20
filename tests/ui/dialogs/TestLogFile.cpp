// The event log over the file object that the program gives it.
#include "support/FakeViews.h"
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "core/clsLogger.h"
#include "windowMakers.h"

#include <QTemporaryDir>

class TestLogFile : public QObject
{
    Q_OBJECT

private slots:
    void entriesAreFollowedByAnEmptyLine();
    void aFileThatCannotBeOpenedShowsNoBox();
    void aWriteThatFailsShowsOneBoxAndEndsTheFile();
    void itIsForTheUserAlone_data();
    void itIsForTheUserAlone();
    void afterADiskWasFullItGoesOn();
    void aSecondProgramWritesBesideAndErasesNothing();
    void theNextProgramMayHaveItAgain();
    void aLongFileMakesRoomOnce();
    void aFileThatCannotMakeRoomEndsTheLog();

private:
    static QByteArray contents(const QString &name)
    {
        QFile file(name);
        [[maybe_unused]] const bool isThere = file.open(QIODevice::ReadOnly);
        return file.readAll();
    }
    static void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    static std::unique_ptr<clsLogger> logger(const std::shared_ptr<FakeIOMonitor> &monitor)
    {
        auto log = std::make_unique<clsLogger>();
        log->setDisplayWindow(monitor);
        log->setFileMaker(windowMakers().logFile);
        log->setLogFileName(QStringLiteral("Keldo-X.log"));
        return log;
    }
};

void TestLogFile::entriesAreFollowedByAnEmptyLine()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto log = logger(monitor);
    log->setLogPath(folder.path());
    log->FileOpen();
    log->LogEvent(QStringLiteral("a"), QStringLiteral("first"), true, false);
    log->LogEvent(QStringLiteral("b"), QStringLiteral("second"), true, false);
    QFile file(folder.filePath(QStringLiteral("Keldo-X.log")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 5);
    QVERIFY(lines.at(0).endsWith(" a: first\r"));
    QCOMPARE(lines.at(1), QByteArray("\r"));
    QVERIFY(lines.at(2).endsWith(" b: second\r"));
    QCOMPARE(lines.at(3), QByteArray("\r"));
}

void TestLogFile::aFileThatCannotBeOpenedShowsNoBox()
{
    const Fixture fixture; // fails on a box
    const QTemporaryDir folder;
    const auto monitor = std::make_shared<FakeIOMonitor>();
    const auto log = logger(monitor);
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("taken")));
    log->setLogPath(folder.path());
    log->setLogFileName(QStringLiteral("taken")); // a folder
    log->FileOpen();
    QVERIFY(!log->isFileActive());
    QCOMPARE(monitor->texts.size(), 1);
    QVERIFY(monitor->texts.first().startsWith(QStringLiteral("opening ")));
}

// A disk that is full stands in the log's place.
static bool fillDisk(const QString &name)
{
    return QFileInfo::exists(QStringLiteral("/dev/full")) &&
           QFile::link(QStringLiteral("/dev/full"), name);
}

void TestLogFile::aWriteThatFailsShowsOneBoxAndEndsTheFile()
{
    Fixture fixture;
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("Keldo-X.log"));
    if (!fillDisk(name))
        QSKIP("needs a device that is always full");
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto log = logger(monitor);
    log->setLogPath(folder.path());
    log->FileOpen();
    QVERIFY(log->isFileActive());
    fixture.boxes.expectStart(QStringLiteral("Error 75 ('Path/File access error')\r\n") +
                              QDir::toNativeSeparators(name) +
                              QStringLiteral(": No space left on device\r\n"));
    log->LogEvent(QStringLiteral("a"), QStringLiteral("lost"), true, false);
    QVERIFY(fixture.boxes.shown().last().text.endsWith(
        QStringLiteral("There was a problem while attempting to write to the log file")));
    QVERIFY(!log->isFileActive());
    log->LogEvent(QStringLiteral("a"), QStringLiteral("not tried again"), true, false);
    QCOMPARE(fixture.boxes.shown().size(), 1);
}

void TestLogFile::itIsForTheUserAlone_data()
{
    QTest::addColumn<bool>("existed");
    QTest::addRow("a new file") << false;
    QTest::addRow("a file that everybody could read") << true;
}

void TestLogFile::itIsForTheUserAlone()
{
    QFETCH(const bool, existed);
    const Fixture fixture;
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("Keldo-X.log"));
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    if (existed) {
        write(name, "old");
        QVERIFY(QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | others));
    }
    const auto log = logger(std::make_shared<FakeIOMonitor>());
    QCOMPARE(log->startFileLogging(folder.path()), QString());
    QVERIFY(!(QFile::permissions(name) & others));
    QVERIFY(QFile::permissions(name).testFlag(QFile::WriteOwner));
    QCOMPARE(QFileInfo(name).size(), qint64(0));
}

void TestLogFile::afterADiskWasFullItGoesOn()
{
    Fixture fixture;
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("Keldo-X.log"));
    if (!fillDisk(name))
        QSKIP("needs a device that is always full");
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto log = logger(monitor);
    QCOMPARE(log->startFileLogging(folder.path()), QString());
    fixture.boxes.expectStart(QStringLiteral("Error 75 ("));
    log->LogEvent(QStringLiteral("a"), QStringLiteral("lost"), true, false);
    QVERIFY(QFile::remove(name)); // the disk has room again
    write(name, "written before\n");
    QCOMPARE(log->startFileLogging(folder.path()), QString());
    log->LogEvent(QStringLiteral("a"), QStringLiteral("written"), true, false);
    QVERIFY(contents(name).startsWith("written before\n"));
    QVERIFY(contents(name).endsWith(" a: written\r\n\r\n"));
}

void TestLogFile::aSecondProgramWritesBesideAndErasesNothing()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto first = logger(monitor);
    const auto second = logger(monitor);
    QCOMPARE(first->startFileLogging(folder.path()), QString());
    first->LogEvent(QStringLiteral("a"), QStringLiteral("first"), true, false);
    const QString beside =
        folder.filePath(QStringLiteral("Keldo-X.%1.log").arg(QCoreApplication::applicationPid()));
    write(beside, "of a process with the same number\n");
    QCOMPARE(second->startFileLogging(folder.path()), QString());
    QVERIFY(monitor->texts.last().endsWith(QFileInfo(beside).fileName() +
                                           QStringLiteral(" as the log file")));
    second->LogEvent(QStringLiteral("b"), QStringLiteral("second"), true, false);
    first->LogEvent(QStringLiteral("a"), QStringLiteral("third"), true, false);
    const QByteArray whole = contents(folder.filePath(QStringLiteral("Keldo-X.log")));
    QVERIFY(whole.contains(" a: first\r\n") && whole.contains(" a: third\r\n"));
    QVERIFY(!whole.contains("second"));
    QVERIFY(contents(beside).startsWith("of a process with the same number\n"));
    QVERIFY(contents(beside).endsWith(" b: second\r\n\r\n"));
}

void TestLogFile::theNextProgramMayHaveItAgain()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const auto monitor = std::make_shared<FakeIOMonitor>();
    auto first = logger(monitor);
    QCOMPARE(first->startFileLogging(folder.path()), QString());
    first.reset();
    const auto next = logger(monitor);
    QCOMPARE(next->startFileLogging(folder.path()), QString());
    QVERIFY(monitor->texts.last().endsWith(QStringLiteral("\\Keldo-X.log as the log file")));
}

void TestLogFile::aLongFileMakesRoomOnce()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto log = logger(monitor);
    const QString name = folder.filePath(QStringLiteral("Keldo-X.log"));
    const QString old = folder.filePath(QStringLiteral("Keldo-X.old.log"));
    write(old, "of a log before");
    QCOMPARE(log->startFileLogging(folder.path()), QString());
    QFile grown(name);
    QVERIFY(grown.open(QIODevice::ReadWrite) && grown.resize(clsLogger::longestFile));
    grown.close();
    log->LogEvent(QStringLiteral("a"), QStringLiteral("still fits"), true, false);
    QCOMPARE(contents(old), QByteArray("of a log before"));
    QVERIFY(QFileInfo(name).size() > 0);
    QVERIFY(QFile::resize(name, clsLogger::longestFile + 1));
    log->LogEvent(QStringLiteral("a"), QStringLiteral("new"), true, false);
    QCOMPARE(QFileInfo(old).size(), clsLogger::longestFile + 1);
    QVERIFY(contents(name).endsWith(" a: new\r\n\r\n"));
    QVERIFY(contents(name).size() < 100);
    QVERIFY(!(QFile::permissions(name) & (QFile::ReadGroup | QFile::ReadOther)));
    QVERIFY(log->isFileActive());
}

void TestLogFile::aFileThatCannotMakeRoomEndsTheLog()
{
    Fixture fixture;
    const QTemporaryDir folder;
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto log = logger(monitor);
    const QString name = folder.filePath(QStringLiteral("Keldo-X.log"));
    QCOMPARE(log->startFileLogging(folder.path()), QString());
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("Keldo-X.old.log"))); // in the way
    QVERIFY(QFile::resize(name, clsLogger::longestFile + 1));
    fixture.boxes.expectStart(QStringLiteral("Error 75 ('Path/File access error')\r\n") +
                              QDir::toNativeSeparators(name));
    log->LogEvent(QStringLiteral("a"), QStringLiteral("lost"), true, false);
    QVERIFY(!log->isFileActive());
    QCOMPARE(QFileInfo(name).size(), clsLogger::longestFile + 1); // nothing is erased
}

KELDOX_TEST(TestLogFile)
#include "TestLogFile.moc"
