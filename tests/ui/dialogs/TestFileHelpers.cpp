// The file types that dialogs offer, and the path helpers.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/TestHooks.h"
#include "ui/dialogs/modFileHandler.h"
#include "widgets/FileChooser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class TestFileHelpers : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TestHooks::answerChoosers({}); }

    void filters_data();
    void filters();
    void filtersInTheDialogsWords_data();
    void filtersInTheDialogsWords();
    void parts_data();
    void parts();
    void absolutePaths();
    void aFolderIsMadeOnce();
    void aFolderThatCannotBeMadeIsReported_data();
    void aFolderThatCannotBeMadeIsReported();
    void aTextIsSavedWhole();
    void aFailedSaveIsReported_data();
    void aFailedSaveIsReported();
    void aFolderIsChosen();
};

static QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
}

void TestFileHelpers::filters_data()
{
    QTest::addColumn<QString>("filter");
    const QString text = QStringLiteral("Text Files (*.TXT)|*.TXT|All Files (*.*)|*.*");
    const QString audio = QStringLiteral("Audio Files (*.WAV)|*.WAV|All Files (*.*)|*.*");
    const QString bitmap = QStringLiteral("bitmap Files (*.BMP)|*.BMP|All Files (*.*)|*.*");
    const QString plot = QStringLiteral("HPGL Files (*.HPL)|*.HPL|All Files (*.*)|*.*");
    const QString all = QStringLiteral("All Files (*.*)|*.*");
    QTest::newRow("a.txt") << text;
    QTest::newRow("A.TXT") << text;
    QTest::newRow("a.wav") << audio;
    QTest::newRow("c:\\sounds.txt\\a.Wav") << audio;
    QTest::newRow("a.bmp") << bitmap;
    QTest::newRow("a.BMP") << bitmap;
    QTest::newRow("/b/a.hpl") << plot;
    QTest::newRow("a.b.hPl") << plot;
    QTest::newRow("a.log") << all;
    QTest::newRow("a.txt.bak") << all;
    QTest::newRow("a.wave") << all;
    QTest::newRow("txt") << all;
    QTest::newRow("folder.txt/a") << all;
    QTest::newRow("") << all;
}

void TestFileHelpers::filters()
{
    QTEST(FilterForName(QString::fromLatin1(QTest::currentDataTag())), "filter");
}

void TestFileHelpers::filtersInTheDialogsWords_data()
{
    QTest::addColumn<QString>("words");
    QTest::newRow("All Files (*.*)|*.*") << "All Files (*)"; // also names without a point
    QTest::newRow("Text Files (*.TXT)|*.TXT|All Files (*.*)|*.*")
        << "Text Files (*.TXT *.txt);;All Files (*)";
    QTest::newRow("bitmap Files (*.BMP)|*.BMP") << "bitmap Files (*.BMP *.bmp)";
    QTest::newRow("x|*.log") << "x (*.log)";
    QTest::newRow("") << "";
}

void TestFileHelpers::filtersInTheDialogsWords()
{
    QTEST(FileChooser::toQtFilter(QString::fromLatin1(QTest::currentDataTag())), "words");
}

void TestFileHelpers::parts_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("c:\\a\\b.txt") << "c:\\a"
                                  << "b.txt";
    QTest::newRow("/a/b/c") << "/a/b"
                            << "c";
    QTest::newRow("a\\b/c") << "a\\b"
                            << "c";
    QTest::newRow("bare.txt") << ""
                              << "bare.txt";
    QTest::newRow("folder/") << "folder"
                             << "";
    QTest::newRow("") << ""
                      << "";
}

void TestFileHelpers::parts()
{
    const QString full = QString::fromLatin1(QTest::currentDataTag());
    QTEST(GetPathFromName(full), "path");
    QTEST(GetNameFromPath(full), "name");
}

void TestFileHelpers::absolutePaths()
{
    QCOMPARE(GetAbsolutePathFromFilename(QStringLiteral("a\\b.txt")),
             QDir::currentPath() + QStringLiteral("/a/b.txt"));
    QCOMPARE(GetAbsolutePathFromFilename(QStringLiteral("b.txt")),
             QDir::currentPath() + QStringLiteral("/b.txt"));
    const QString absolute = QDir::rootPath() + QStringLiteral("x/y.txt");
    QCOMPARE(GetAbsolutePathFromFilename(absolute), absolute);
    QCOMPARE(GetAbsolutePathFromFilename(QString()), QString());
}

void TestFileHelpers::aFolderIsMadeOnce()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const QString wanted = folder.filePath(QStringLiteral("one/two"));
    QVERIFY(MakeDir(folder.path() + QStringLiteral("\\one\\two")));
    QVERIFY(QDir(wanted).exists());
    QVERIFY(SaveTextFile(wanted + QStringLiteral("/kept.txt"), QStringLiteral("x")));
    QVERIFY(MakeDir(wanted));
    QCOMPARE(contentOf(wanted + QStringLiteral("/kept.txt")), QByteArray("x"));
}

void TestFileHelpers::aFolderThatCannotBeMadeIsReported_data()
{
    QTest::addColumn<QString>("below");
    QTest::newRow("below a file") << "file/folder";
    QTest::newRow("no name") << QString();
}

void TestFileHelpers::aFolderThatCannotBeMadeIsReported()
{
    QFETCH(const QString, below);
    Fixture fixture;
    const QTemporaryDir folder;
    QVERIFY(SaveTextFile(folder.filePath(QStringLiteral("file")), QString()));
    fixture.boxes.expectStart(QStringLiteral("Error 75 ("), MessageBox::Exclamation);
    QVERIFY(!MakeDir(below.isEmpty() ? below : folder.filePath(below)));
    QVERIFY(
        fixture.boxes.texts().value(0).endsWith(QStringLiteral(" in modFileHandler.MakeDir\r\n")));
}

void TestFileHelpers::aTextIsSavedWhole()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("t.txt"));
    QVERIFY(SaveTextFile(name, QStringLiteral("a long first text")));
    QVERIFY(SaveTextFile(name, QStringLiteral("22 \u00b0C\r\n")));
    QCOMPARE(contentOf(name), QByteArray("22 \xc2\xb0"
                                         "C\r\n"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
}

void TestFileHelpers::aFailedSaveIsReported_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("error");
    QTest::newRow("no folder") << "missing/t.txt"
                               << "Error 75 (";
    QTest::newRow("no name") << QString() << "Error 52 (";
}

void TestFileHelpers::aFailedSaveIsReported()
{
    QFETCH(const QString, name);
    QFETCH(const QString, error);
    Fixture fixture;
    const QTemporaryDir folder;
    fixture.boxes.expectStart(error, MessageBox::Exclamation);
    QVERIFY(!SaveTextFile(name.isEmpty() ? name : folder.filePath(name), QStringLiteral("x")));
    QVERIFY(fixture.boxes.texts().value(0).endsWith(
        QStringLiteral("There was a problem while attempting to save the data")));
}

void TestFileHelpers::aFolderIsChosen()
{
    const Fixture fixture;
    std::optional<QString> chosen = QStringLiteral("/some/folder");
    FileChooser::Request asked;
    TestHooks::answerChoosers([&](const FileChooser::Request &request) {
        asked = request;
        return chosen;
    });
    QCOMPARE(GetAFolder(), QStringLiteral("/some/folder"));
    QCOMPARE(asked.mode, FileChooser::Mode::Folder);
    QCOMPARE(asked.title, QStringLiteral("Choose a folder"));
    chosen.reset();
    QCOMPARE(GetAFolder(), QString()); // cancelled, without a box
}

KELDOX_TEST(TestFileHelpers)
#include "TestFileHelpers.moc"
