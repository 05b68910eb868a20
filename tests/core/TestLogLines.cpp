// What one line of the event log holds, and how its file starts, ends and starts again.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "app/FakeStartUp.h"
#include "core/TextStart.h"
#include "core/TimeStamp.h"
#include "core/clsLogger.h"

#include <QTemporaryDir>

namespace {

class MarkedMonitor : public FakeIOMonitor
{
public:
    void fileLoggingEnded() override { fileLogging = false; }
};

} // namespace

class TestLogLines : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aLongTextShowsItsBeginningAndItsRestInNumbers_data();
    void aLongTextShowsItsBeginningAndItsRestInNumbers();
    void displayAndFileTellTheSame();
    void noPasswordIsTold();
    void theFirstStartOverwrites();
    void startingWhileTheFileIsActiveDoesNothing();
    void aFailedWriteUnchecksItsEntryAndNamesTheFile();
    void startingAgainGoesOnAtTheEnd();
    void anotherFolderIsAFileOfItsOwn();
    void aStartThatFailsSaysWhy_data();
    void aStartThatFailsSaysWhy();
    void afterAFailedFirstStartTheNextOneIsTheFirst();
    void aFileThatGrewTooLongIsPutAsideAndBegunAnew();
    void aTimeStampIsKnownByItsPattern_data();
    void aTimeStampIsKnownByItsPattern();

private:
    QString start() { return log->startFileLogging(folder->path()); }
    void tell(const QString &text) { log->LogEvent(QStringLiteral("s"), text, true, true); }

    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<QTemporaryDir> folder;
    std::shared_ptr<MarkedMonitor> monitor;
    std::shared_ptr<LogFileRecord> file;
    std::shared_ptr<clsLogger> log;
};

void TestLogLines::init()
{
    fixture = std::make_unique<Fixture>();
    folder = std::make_unique<QTemporaryDir>();
    monitor = std::make_shared<MarkedMonitor>();
    monitor->fileLogging = true;
    file = std::make_shared<LogFileRecord>();
    log = std::make_shared<clsLogger>();
    log->setDisplayWindow(monitor);
    log->setFileMaker([this] { return std::make_unique<FakeLogFile>(file); });
}

void TestLogLines::cleanup()
{
    log.reset();
    fixture.reset();
}

void TestLogLines::aLongTextShowsItsBeginningAndItsRestInNumbers_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("end");
    QTest::addRow("2000") << 2000 << QStringLiteral("x");
    QTest::addRow("2001") << 2001 << QStringLiteral("x... (1 more characters)");
    QTest::addRow("64 KiB") << 65536 << QStringLiteral("x... (63536 more characters)");
    QTest::addRow("10 MB") << 10'000'000 << QStringLiteral("x... (9998000 more characters)");
}

void TestLogLines::aLongTextShowsItsBeginningAndItsRestInNumbers()
{
    QFETCH(const int, length);
    QFETCH(const QString, end);
    start();
    tell(QString(length, QLatin1Char('x')));
    const QString shown = monitor->texts.last();
    QCOMPARE(shown.count(QLatin1Char('x')), 2000);
    QCOMPARE(shown.mid(1999), end);
    QVERIFY(file->contents.endsWith(QStringLiteral(": ") + shown + QStringLiteral("\r\n\r\n")));
}

void TestLogLines::displayAndFileTellTheSame()
{
    start();
    for (int i = 0; i < 3; ++i) {
        file->contents.clear();
        tell(QStringLiteral("text"));
        QCOMPARE(file->contents, monitor->sources.last() + QStringLiteral(": text\r\n\r\n"));
        QTest::qWait(400); // so that some event stands at a second's end
    }
}

void TestLogLines::noPasswordIsTold()
{
    start();
    tell(QStringLiteral(" sending PASSWORD hunter2 to com port 3"));
    QCOMPARE(monitor->texts.last(), QStringLiteral(" sending PASSWORD ****"));
    QVERIFY(file->contents.endsWith(QStringLiteral("s:  sending PASSWORD ****\r\n\r\n")));
}

void TestLogLines::theFirstStartOverwrites()
{
    file->contents = QStringLiteral("of the run before");
    QCOMPARE(start(), QString());
    QVERIFY(log->isFileActive());
    QVERIFY(file->contents.isEmpty());
}

void TestLogLines::startingWhileTheFileIsActiveDoesNothing()
{
    start();
    tell(QStringLiteral("first"));
    QCOMPARE(start(), QString());
    QCOMPARE(file->opened, 1);
    QVERIFY(file->contents.contains(QStringLiteral("first")));
}

void TestLogLines::aFailedWriteUnchecksItsEntryAndNamesTheFile()
{
    start();
    file->writeFails = true;
    fixture->boxes.expectStart(
        QStringLiteral("Error 75 ('Path/File access error')\r\n") +
        QDir::toNativeSeparators(folder->path() + QStringLiteral("/log.txt")) +
        QStringLiteral(": no reason\r\n"));
    fixture->boxes.whileOpen([this] { QVERIFY(!monitor->fileLogging); });
    tell(QStringLiteral("lost"));
    QVERIFY(!monitor->fileLogging);
    QVERIFY(!log->isFileActive());
    QCOMPARE(monitor->texts.last(), QStringLiteral("lost"));
}

void TestLogLines::startingAgainGoesOnAtTheEnd()
{
    start();
    tell(QStringLiteral("first"));
    file->writeFails = true;
    fixture->boxes.expectStart(QStringLiteral("Error 75"));
    tell(QStringLiteral("lost"));
    file->writeFails = false;
    monitor->fileLogging = true;
    QCOMPARE(start(), QString());
    tell(QStringLiteral("second"));
    QVERIFY(file->contents.contains(QStringLiteral(": first\r\n\r\n")));
    QVERIFY(file->contents.endsWith(QStringLiteral(": second\r\n\r\n")));
}

void TestLogLines::anotherFolderIsAFileOfItsOwn()
{
    start();
    tell(QStringLiteral("first"));
    file->writeFails = true;
    fixture->boxes.expectStart(QStringLiteral("Error 75"));
    tell(QStringLiteral("lost"));
    file->writeFails = false;
    QCOMPARE(log->startFileLogging(folder->filePath(QStringLiteral("new"))), QString());
    QVERIFY(file->contents.isEmpty());
    QVERIFY(QDir(folder->filePath(QStringLiteral("new"))).exists());
}

void TestLogLines::aStartThatFailsSaysWhy_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("why");
    QTest::addRow("the file") << QStringLiteral("file") << QStringLiteral("/log.txt: no reason");
    QTest::addRow("no folder") << QStringLiteral("folder") << QStringLiteral("Not a directory");
    QTest::addRow("a file, no folder")
        << QStringLiteral("a file") << QStringLiteral("Not a directory");
    QTest::addRow("no file at all")
        << QStringLiteral("none") << QStringLiteral("The log has no file.");
}

void TestLogLines::aStartThatFailsSaysWhy()
{
    QFETCH(const QString, what);
    QFETCH(const QString, why);
    QString path = folder->path();
    file->openFails = what == QLatin1String("file");
    if (what == QLatin1String("none"))
        log->setFileMaker({});
    if (what == QLatin1String("folder") || what == QLatin1String("a file")) {
        path = folder->filePath(what == QLatin1String("folder") ? QStringLiteral("blocker/below")
                                                                : QStringLiteral("blocker"));
        QFile blocker(folder->filePath(QStringLiteral("blocker")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
    }
    const QString failure = log->startFileLogging(path); // no box: whoever asked tells
    QVERIFY2(QDir::fromNativeSeparators(failure).endsWith(why), qPrintable(failure));
    if (what != QLatin1String("none"))
        QVERIFY2(failure.startsWith(QDir::toNativeSeparators(path)), qPrintable(failure));
    QVERIFY(!log->isFileActive());
    tell(QStringLiteral("t"));
    QVERIFY(file->contents.isEmpty());
}

void TestLogLines::afterAFailedFirstStartTheNextOneIsTheFirst()
{
    file->contents = QStringLiteral("of the run before");
    file->openFails = true;
    QVERIFY(!start().isEmpty());
    file->openFails = false;
    QCOMPARE(start(), QString());
    QVERIFY(file->contents.isEmpty());
}

void TestLogLines::aFileThatGrewTooLongIsPutAsideAndBegunAnew()
{
    QCOMPARE(start(), QString());
    QFile real(folder->filePath(QStringLiteral("log.txt")));
    QVERIFY(real.open(QIODevice::WriteOnly));
    file->contents = QString(clsLogger::longestFile + 1, QLatin1Char('x'));
    tell(QStringLiteral("next"));
    QCOMPARE(file->opened, 2);
    QCOMPARE(file->contents, monitor->sources.last() + QStringLiteral(": next\r\n\r\n"));
    QVERIFY(QFile::exists(folder->filePath(QStringLiteral("log.old.txt"))));
}

void TestLogLines::aTimeStampIsKnownByItsPattern_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("stamp");
    const QString stamp = QStringLiteral("2026-01-02 03:04:59");
    QTest::addRow("alone") << stamp << stamp;
    QTest::addRow("with a source") << stamp + QStringLiteral(" FileOpen") << stamp;
    QTest::addRow("cut") << stamp.chopped(1) << QString();
    QTest::addRow("a letter") << QStringLiteral("2026-01-02 03:O4:59") << QString();
    QTest::addRow("below the digits") << QStringLiteral("2026-01-02 03:/4:59") << QString();
    QTest::addRow("above the digits") << QStringLiteral("2026-01-02 03::4:59") << QString();
    QTest::addRow("another mark") << QStringLiteral("2026-01-02T03:04:59") << QString();
}

void TestLogLines::aTimeStampIsKnownByItsPattern()
{
    QFETCH(const QString, label);
    QFETCH(const QString, stamp);
    QCOMPARE(timeStampOf(label), stamp);
}

KELDOX_TEST(TestLogLines)
#include "TestLogLines.moc"
