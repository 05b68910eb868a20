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

private:
    static std::unique_ptr<clsLogger> logger(const std::shared_ptr<FakeIOMonitor> &monitor)
    {
        auto log = std::make_unique<clsLogger>();
        log->setDisplayWindow(monitor);
        log->setFileMaker(windowMakers().logFile);
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
    log->setLogFileName(QStringLiteral("Keldo-X.log"));
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

void TestLogFile::aWriteThatFailsShowsOneBoxAndEndsTheFile()
{
    const QString full = QStringLiteral("/dev/full");
    if (!QFileInfo::exists(full))
        QSKIP("needs a device that is always full");
    Fixture fixture;
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto log = logger(monitor);
    log->setLogPath(QStringLiteral("/dev"));
    log->setLogFileName(QStringLiteral("full"));
    log->FileOpen();
    QVERIFY(log->isFileActive());
    fixture.boxes.expectStart(QStringLiteral("Error 75 ("));
    log->LogEvent(QStringLiteral("a"), QStringLiteral("lost"), true, false);
    QVERIFY(fixture.boxes.shown().last().text.endsWith(
        QStringLiteral("There was a problem while attempting to write to the log file")));
    QVERIFY(!log->isFileActive());
    log->LogEvent(QStringLiteral("a"), QStringLiteral("not tried again"), true, false);
    QCOMPARE(fixture.boxes.shown().size(), 1);
}

KELDOX_TEST(TestLogFile)
#include "TestLogFile.moc"
