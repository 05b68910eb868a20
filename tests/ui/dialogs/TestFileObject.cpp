// The file object as the event log uses it.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "app/AppState.h"
#include "core/clsLogger.h"
#include "support/FakeViews.h"
#include "ui/dialogs/clsFileObject.h"

#include <QFile>
#include <QTemporaryDir>

class TestFileObject : public QObject
{
    Q_OBJECT

private slots:
    void writesLines();
    void backslashesSeparateFolders();
    void overwritesAnOldFile();
    void linesAreOnTheDiskAtOnce();
    void aClosedFileTakesNothing();
    void closingAClosedFileIsHarmless();
    void anEmptyNameIsReported();
    void aFolderThatIsNotThereIsReported();
    void anOpenFileIsNotOpenedAgain();
    void aFullDiskIsReported();
    void theEndOfTheObjectClosesTheFile();
    void underTheEventLog();
    void aFailingLogFileEndsFileLogging();
};

static QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
}

static int reportsFrom(const Fixture &fixture, const QString &source)
{
    return static_cast<int>(fixture.boxes.texts()
                                .filter(QStringLiteral(" in ") + source + QStringLiteral("\r\n"))
                                .size());
}

void TestFileObject::writesLines()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    QVERIFY(!file.success());
    file.setPathname(folder.filePath(QStringLiteral("a.txt")));
    file.OpenForOutput();
    QVERIFY(file.success());
    file.Line_Output(QStringLiteral("one"));
    file.Line_Output(QString());
    file.Line_Output(QStringLiteral("22.5 \u00b0C"));
    QVERIFY(file.success());
    file.closeFile();
    QVERIFY(file.success());
    QCOMPARE(contentOf(file.pathname()), QByteArray("one\r\n\r\n22.5 \xc2\xb0"
                                                    "C\r\n"));
}

void TestFileObject::backslashesSeparateFolders()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(folder.path() + QStringLiteral("\\\\b.txt")); // doubled, as the log gives it
    file.OpenForOutput();
    QVERIFY(file.success());
    file.Line_Output(QStringLiteral("x"));
    file.closeFile();
    QCOMPARE(contentOf(folder.filePath(QStringLiteral("b.txt"))), QByteArray("x\r\n"));
}

void TestFileObject::overwritesAnOldFile()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(folder.filePath(QStringLiteral("c.txt")));
    for (const char *line : {"a long first line", "new"}) {
        file.OpenForOutput();
        file.Line_Output(QLatin1String(line));
        file.closeFile();
    }
    QCOMPARE(contentOf(file.pathname()), QByteArray("new\r\n"));
}

void TestFileObject::linesAreOnTheDiskAtOnce()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(folder.filePath(QStringLiteral("d.txt")));
    file.OpenForOutput();
    file.Line_Output(QStringLiteral("now"));
    QCOMPARE(contentOf(file.pathname()), QByteArray("now\r\n"));
}

void TestFileObject::aClosedFileTakesNothing()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(folder.filePath(QStringLiteral("e.txt")));
    file.Line_Output(QStringLiteral("x"));
    QCOMPARE(contentOf(file.pathname()), QByteArray("(not there)"));
    file.OpenForOutput();
    file.closeFile();
    file.Line_Output(QStringLiteral("x"));
    QCOMPARE(contentOf(file.pathname()), QByteArray());
}

void TestFileObject::closingAClosedFileIsHarmless()
{
    const Fixture fixture;
    clsFileObject file;
    file.closeFile();
    QVERIFY(!file.isOpen());
}

void TestFileObject::anEmptyNameIsReported()
{
    Fixture fixture;
    fixture.boxes.expectStart(QStringLiteral("Error 52 ("), MessageBox::Exclamation);
    clsFileObject file;
    file.OpenForOutput();
    QVERIFY(!file.success());
    QVERIFY(fixture.boxes.texts().first().contains(QStringLiteral("invalid filename")));
    QCOMPARE(reportsFrom(fixture, QStringLiteral("clsFileObject.OpenForOutput")), 1);
}

void TestFileObject::aFolderThatIsNotThereIsReported()
{
    Fixture fixture;
    const QTemporaryDir folder;
    fixture.boxes.expectStart(QStringLiteral("Error 75 ("));
    clsFileObject file;
    file.setPathname(folder.filePath(QStringLiteral("no/such/f.txt")));
    file.OpenForOutput();
    QVERIFY(!file.success());
    QVERIFY(!file.isOpen());
    QCOMPARE(reportsFrom(fixture, QStringLiteral("clsFileObject.OpenForOutput")), 1);
}

void TestFileObject::anOpenFileIsNotOpenedAgain()
{
    Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(folder.filePath(QStringLiteral("g.txt")));
    file.OpenForOutput();
    file.Line_Output(QStringLiteral("kept"));
    fixture.boxes.expectStart(QStringLiteral("Error 55 ("));
    file.OpenForOutput();
    QVERIFY(!file.success());
    QCOMPARE(contentOf(file.pathname()), QByteArray("kept\r\n"));
}

void TestFileObject::aFullDiskIsReported()
{
    Fixture fixture;
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("needs a device that is always full");
    clsFileObject file;
    file.setPathname(QStringLiteral("/dev/full"));
    file.OpenForOutput();
    QVERIFY(file.success());
    fixture.boxes.expectStart(QStringLiteral("Error 57 ("));
    file.Line_Output(QStringLiteral("x"));
    QVERIFY(!file.success());
    QCOMPARE(reportsFrom(fixture, QStringLiteral("clsFileObject.Line_Output")), 1);
    fixture.boxes.acceptAll(); // what could not be written is reported again at the close
    file.closeFile();
    QVERIFY(!file.isOpen());
}

void TestFileObject::theEndOfTheObjectClosesTheFile()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("h.txt"));
    {
        clsFileObject file;
        file.setPathname(name);
        file.OpenForOutput();
        file.Line_Output(QStringLiteral("end"));
    }
    QCOMPARE(contentOf(name), QByteArray("end\r\n"));
}

static std::shared_ptr<clsLogger> loggerInto(const QString &path, const QString &name)
{
    const auto monitor = std::make_shared<FakeIOMonitor>();
    monitor->fileLogging = true;
    const auto logger = std::make_shared<clsLogger>();
    logger->setDisplayWindow(monitor);
    logger->setFileMaker([] { return std::make_unique<clsFileObject>(); });
    logger->setLogPath(path);
    logger->setLogFileName(name);
    installEventLog(logger);
    return logger;
}

void TestFileObject::underTheEventLog()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const auto logger =
        loggerInto(folder.filePath(QStringLiteral("deep/er")), QStringLiteral("Keldo-X.log"));
    logger->FileOpen();
    QVERIFY(logger->isFileActive());
    logger->LogEvent(QStringLiteral("Channel3 "), QStringLiteral("connected"), true, true);
    logger->LogEvent(QStringLiteral("x"), QStringLiteral("y"), true, true);
    const QByteArray content = contentOf(folder.filePath(QStringLiteral("deep/er/Keldo-X.log")));
    QVERIFY(content.contains(" Channel3 : connected\r\n\r\n"));
    QVERIFY(content.endsWith(" x: y\r\n\r\n"));
    installEventLog(nullptr);
}

void TestFileObject::aFailingLogFileEndsFileLogging()
{
    Fixture fixture;
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("needs a device that is always full");
    const auto logger = loggerInto(QStringLiteral("/dev"), QStringLiteral("full"));
    logger->FileOpen();
    QVERIFY(logger->isFileActive());
    fixture.boxes.acceptAll();
    logger->LogEvent(QStringLiteral("x"), QStringLiteral("y"), true, true);
    QVERIFY(!logger->isFileActive());
    const auto shown = fixture.boxes.texts().size();
    logger->LogEvent(QStringLiteral("x"), QStringLiteral("y"), true, true);
    QCOMPARE(fixture.boxes.texts().size(), shown); // no storm
    installEventLog(nullptr);
}

KELDOX_TEST(TestFileObject)
#include "TestFileObject.moc"
