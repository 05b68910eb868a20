// The event log: what its display shows, what its file holds, and when neither hears anything.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "app/FakeStartUp.h"
#include "core/ResumeNext.h"
#include "core/TimeStamp.h"
#include "core/clsLogger.h"

#include <QRegularExpression>
#include <QTemporaryDir>

class TestLogger : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void anEventIsShownWithItsDateTimeAndSource_data();
    void anEventIsShownWithItsDateTimeAndSource();
    void anEventThatIsNotForTheDisplayIsNotShown();
    void withoutADisplayAnEventIsLostQuietly();
    void eachEntryOfTheFileIsFollowedByAnEmptyLine();
    void anEventThatIsNotForTheFileIsNotWritten();
    void withTheMenuEntryUncheckedTheEventIsOnlyShown();
    void beforeTheFileIsOpenNothingIsWritten();
    void openingTellsTheFullNameWithItsDoubledSeparator();
    void openingWithoutANameOrAPathLeavesTheFileOff_data();
    void openingWithoutANameOrAPathLeavesTheFileOff();
    void aFailedOpenLeavesTheFileOffSilently();
    void openingAgainClosesTheOldFileAndOverwrites();
    void aFailedWriteEndsFileLoggingWithOneBox_data();
    void aFailedWriteEndsFileLoggingWithOneBox();
    void anErrorReportIsWrittenToTheFile();
    void theFolderIsMadeWhenItIsNotThere();
    void aFolderThatCannotBeMadeIsReportedAndTheAnswerIsTrue();
    void theFileIsClosedWithTheLog();
    void overwriteIsStoredOnly();

private:
    std::shared_ptr<clsLogger> openedLog();

    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<QTemporaryDir> folder;
    std::shared_ptr<FakeIOMonitor> monitor;
    std::shared_ptr<LogFileRecord> file;
    std::shared_ptr<clsLogger> log;
};

void TestLogger::init()
{
    fixture = std::make_unique<Fixture>();
    folder = std::make_unique<QTemporaryDir>();
    monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    file = std::make_shared<LogFileRecord>();
    log = std::make_shared<clsLogger>();
    log->setDisplayWindow(monitor);
    log->setFileMaker([this] { return std::make_unique<FakeLogFile>(file); });
}

void TestLogger::cleanup()
{
    log.reset();
    fixture.reset();
    QLocale::setDefault(QLocale::c());
}

std::shared_ptr<clsLogger> TestLogger::openedLog()
{
    log->setLogPath(folder->path());
    log->FileOpen();
    monitor->sources.clear();
    monitor->texts.clear();
    return log;
}

void TestLogger::anEventIsShownWithItsDateTimeAndSource_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addRow("C") << QLocale::c();
    QTest::addRow("USA") << QLocale(QLocale::English, QLocale::UnitedStates);
    QTest::addRow("Germany") << QLocale(QLocale::German, QLocale::Germany);
    QTest::addRow("Egypt") << QLocale(QLocale::Arabic, QLocale::Egypt); // digits of its own
}

void TestLogger::anEventIsShownWithItsDateTimeAndSource()
{
    QFETCH(const QLocale, locale);
    QLocale::setDefault(locale);
    const auto before = QDateTime::currentDateTime().addSecs(-1);
    log->LogEvent(QStringLiteral("SearchComPorts"), QStringLiteral("the text"), true, true);
    QCOMPARE(monitor->texts, QStringList{QStringLiteral("the text")});
    const QString label = monitor->sources.at(0);
    QVERIFY(label.endsWith(QStringLiteral(" SearchComPorts")));
    // The same digits in every language.
    const QString stamp = label.chopped(15);
    QVERIFY2(QRegularExpression(QStringLiteral("^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}$"))
                 .match(stamp)
                 .hasMatch(),
             qPrintable(stamp));
    const auto shown = QDateTime::fromString(stamp, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    QVERIFY(shown >= before && shown <= QDateTime::currentDateTime());
    QCOMPARE(timeStampOf(label), stamp);
    QCOMPARE(timeStampOf(QStringLiteral("FileOpen")), QString());
    QCOMPARE(timeStampOf(QStringLiteral("a source that is long enough")), QString());
}

void TestLogger::anEventThatIsNotForTheDisplayIsNotShown()
{
    openedLog()->LogEvent(QStringLiteral("s"), QStringLiteral("t"), true, false);
    QVERIFY(monitor->texts.isEmpty());
    QVERIFY(file->contents.endsWith(QStringLiteral(" s: t\r\n\r\n")));
}

void TestLogger::withoutADisplayAnEventIsLostQuietly()
{
    log->setDisplayWindow(nullptr);
    QVERIFY(!log->hasDisplay());
    log->LogEvent(QStringLiteral("s"), QStringLiteral("t"), true, true);
}

void TestLogger::eachEntryOfTheFileIsFollowedByAnEmptyLine()
{
    openedLog()->LogEvent(QStringLiteral("Channel3 "), QStringLiteral("first"), true, true);
    log->LogEvent(QStringLiteral("b"), QStringLiteral("second"), true, true);
    const QStringList lines = file->contents.split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines.at(0), monitor->sources.at(0) + QStringLiteral(": first"));
    QVERIFY(lines.at(0).endsWith(QStringLiteral(" Channel3 : first")));
    QCOMPARE(lines.at(1), QString());
    QCOMPARE(lines.at(2), monitor->sources.at(1) + QStringLiteral(": second"));
    QCOMPARE(lines.at(3), QString());
    QCOMPARE(lines.at(4), QString());
}

void TestLogger::anEventThatIsNotForTheFileIsNotWritten()
{
    openedLog()->LogEvent(QStringLiteral("s"), QStringLiteral("t"), false, true);
    QCOMPARE(monitor->texts.size(), 1);
    QVERIFY(file->contents.isEmpty());
}

void TestLogger::withTheMenuEntryUncheckedTheEventIsOnlyShown()
{
    monitor->fileLogging = false;
    openedLog()->LogEvent(QStringLiteral("s"), QStringLiteral("t"), true, true);
    QCOMPARE(monitor->texts.size(), 1);
    QVERIFY(file->contents.isEmpty());
    monitor->fileLogging = true;
    log->LogEvent(QStringLiteral("s"), QStringLiteral("u"), true, true);
    QVERIFY(file->contents.endsWith(QStringLiteral(" s: u\r\n\r\n")));
}

void TestLogger::beforeTheFileIsOpenNothingIsWritten()
{
    log->LogEvent(QStringLiteral("s"), QStringLiteral("t"), true, true);
    QVERIFY(!log->isFileActive());
    QCOMPARE(file->opened, 0);
    QVERIFY(file->contents.isEmpty());
}

void TestLogger::openingTellsTheFullNameWithItsDoubledSeparator()
{
    log->setLogPath(folder->path() + QLatin1Char('\\'));
    log->setLogFileName(QStringLiteral("Keldo-X.log"));
    log->FileOpen();
    const QString name = folder->path() + QStringLiteral("\\\\Keldo-X.log");
    QCOMPARE(monitor->sources, QStringList{QStringLiteral("FileOpen")});
    QCOMPARE(monitor->texts,
             QStringList{QStringLiteral("opening ") + name + QStringLiteral(" as the log file")});
    QCOMPARE(file->pathname, name);
    QCOMPARE(file->opened, 1);
    QVERIFY(log->isFileActive());
}

void TestLogger::openingWithoutANameOrAPathLeavesTheFileOff_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addRow("no name") << QStringLiteral(".") << QString();
    QTest::addRow("no path") << QString() << QStringLiteral("Keldo-X.log");
}

void TestLogger::openingWithoutANameOrAPathLeavesTheFileOff()
{
    QFETCH(const QString, path);
    QFETCH(const QString, name);
    log->setLogPath(path);
    log->setLogFileName(name);
    log->FileOpen();
    QVERIFY(!log->isFileActive());
    QCOMPARE(file->opened, 0);
    QVERIFY(monitor->texts.isEmpty());
}

void TestLogger::aFailedOpenLeavesTheFileOffSilently()
{
    file->openFails = true;
    openedLog()->LogEvent(QStringLiteral("s"), QStringLiteral("t"), true, true);
    QVERIFY(!log->isFileActive());
    QCOMPARE(file->opened, 1);
    QCOMPARE(file->closed, 1);
    log->WriteToLogFile(QStringLiteral("t"));
    QVERIFY(file->contents.isEmpty());
}

void TestLogger::openingAgainClosesTheOldFileAndOverwrites()
{
    openedLog()->LogEvent(QStringLiteral("s"), QStringLiteral("old"), true, true);
    log->FileOpen();
    QCOMPARE(file->closed, 1);
    log->LogEvent(QStringLiteral("s"), QStringLiteral("new"), true, true);
    QVERIFY(!file->contents.contains(QStringLiteral("old")));
    QVERIFY(file->contents.endsWith(QStringLiteral(" s: new\r\n\r\n")));
}

void TestLogger::aFailedWriteEndsFileLoggingWithOneBox_data()
{
    QTest::addColumn<bool>("throws");
    QTest::addRow("the file says so") << false;
    QTest::addRow("the file raises it") << true;
}

void TestLogger::aFailedWriteEndsFileLoggingWithOneBox()
{
    QFETCH(const bool, throws);
    installEventLog(openedLog());
    (throws ? file->writeThrows : file->writeFails) = true;
    fixture->boxes.expectStart(throws ? QStringLiteral("Error 61 ('Disk full')")
                                      : QStringLiteral("Error 75 ('Path/File access error')"),
                               48);
    logEvent(QStringLiteral("s"), QStringLiteral("first"));
    QCOMPARE(fixture->boxes.shown().size(), 1);
    QVERIFY(fixture->boxes.texts().at(0).endsWith(
        QStringLiteral(" in clsLogger.WriteToLogFile\r\n"
                       "There was a problem while attempting to write to the log file")));
    QVERIFY(!log->isFileActive());
    // The account of the failure itself reaches the display, and later events go on being shown.
    QCOMPARE(monitor->texts.size(), 2);
    logEvent(QStringLiteral("s"), QStringLiteral("second"));
    QCOMPARE(monitor->texts.last(), QStringLiteral("second"));
    QCOMPARE(file->closed, 1);
}

void TestLogger::anErrorReportIsWrittenToTheFile()
{
    installEventLog(openedLog());
    fixture->boxes.expectStart(QStringLiteral("Error 13"));
    reportAndEnd("x.y", [] { throw RunTimeError(13); });
    QVERIFY(file->contents.contains(QStringLiteral(" modErrorHandling: Error number = 13\r\n")));
    QVERIFY(file->contents.endsWith(QStringLiteral("from <x.y>\r\n\r\n\r\n")));
}

void TestLogger::theFolderIsMadeWhenItIsNotThere()
{
    const QString path = folder->filePath(QStringLiteral("one\\two"));
    QVERIFY(log->MakeDir(path));
    QVERIFY(QDir(folder->filePath(QStringLiteral("one/two"))).exists());
    QVERIFY(log->MakeDir(path)); // there already

    log->setLogPath(folder->filePath(QStringLiteral("three")));
    log->FileOpen();
    QVERIFY(QDir(folder->filePath(QStringLiteral("three"))).exists());
}

void TestLogger::aFolderThatCannotBeMadeIsReportedAndTheAnswerIsTrue()
{
    QFile blocker(folder->filePath(QStringLiteral("file")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    fixture->boxes.expectStart(QStringLiteral("Error 75"), 48);
    QVERIFY(log->MakeDir(folder->filePath(QStringLiteral("file/below"))));
    QVERIFY(fixture->boxes.texts().at(0).endsWith(
        QStringLiteral(" in clsLogger\r\n"
                       "There was a problem while attempting to write to the log file")));
}

void TestLogger::theFileIsClosedWithTheLog()
{
    openedLog();
    QCOMPARE(file->closed, 0);
    log.reset();
    QCOMPARE(file->closed, 1);
}

void TestLogger::overwriteIsStoredOnly()
{
    QVERIFY(log->VOverwrite());
    log->setVOverwrite(false);
    QVERIFY(!log->VOverwrite());
}

KELDOX_TEST(TestLogger)
#include "TestLogger.moc"
