// The file object with its file dialog, and reading with it.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/TestHooks.h"
#include "ui/dialogs/clsFileObject.h"
#include "widgets/FileChooser.h"

#include <QFile>
#include <QTemporaryDir>

class TestFileObjectReading : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_asked.clear(); }
    void cleanup() { TestHooks::answerChoosers({}); }

    void aNewObjectKnowsNothing();
    void theDialogFollowsTheMode_data();
    void theDialogFollowsTheMode();
    void theDialogStartsInTheFolderWithTheExtension();
    void theFilterFollowsTheName();
    void cancelIsReportedAndKeepsTheName();
    void anotherModeIsReported();
    void linesComeWithoutTheirBreaks();
    void aClosedFileGivesNothing();
    void readingPastTheEndIsReported();
    void aChosenFileIsReadWhole_data();
    void aChosenFileIsReadWhole();
    void readingAfterCancelGivesNothing();
    void aFileThatCannotBeOpenedIsReportedAsAReadError();
    void readOnlyTakesTheRightToWrite();
    void readOnlyNeedsAFile_data();
    void readOnlyNeedsAFile();

private:
    void choose(const std::optional<QString> &name)
    {
        TestHooks::answerChoosers([this, name](const FileChooser::Request &request) {
            m_asked.append(request);
            return name;
        });
    }
    static QString made(const QTemporaryDir &folder, const QByteArray &content)
    {
        QFile file(folder.filePath(QStringLiteral("made.txt")));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
                   ? file.fileName()
                   : QString();
    }

    QList<FileChooser::Request> m_asked;
};

void TestFileObjectReading::aNewObjectKnowsNothing()
{
    const Fixture fixture;
    const clsFileObject file;
    QCOMPARE(file.pathname(), QString());
    QCOMPARE(file.defaultDir(), QString());
    QCOMPARE(file.Filter(), QStringLiteral("All Files (*.*)|*.*"));
    QCOMPARE(file.fileNumber(), std::int16_t{0});
    QVERIFY(!file.isOpen());
    QVERIFY(!file.success());
}

void TestFileObjectReading::theDialogFollowsTheMode_data()
{
    QTest::addColumn<bool>("toOpen");
    QTest::newRow("Open") << true;
    QTest::newRow("Save") << false;
    QTest::newRow("Save As") << false;
}

void TestFileObjectReading::theDialogFollowsTheMode()
{
    QFETCH(const bool, toOpen);
    const Fixture fixture;
    choose(QStringLiteral("/chosen/one.txt"));
    clsFileObject file;
    file.ChooseFile(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(file.success());
    QCOMPARE(file.pathname(), QStringLiteral("/chosen/one.txt"));
    QCOMPARE(m_asked.size(), 1);
    QCOMPARE(m_asked.first().title, QStringLiteral("Choose a filename"));
    QCOMPARE(m_asked.first().mode, toOpen ? FileChooser::Mode::Open : FileChooser::Mode::Save);
}

void TestFileObjectReading::theDialogStartsInTheFolderWithTheExtension()
{
    const Fixture fixture;
    choose(QStringLiteral("x"));
    clsFileObject file;
    file.setDefaultDir(QStringLiteral("/some/folder"));
    file.setDefaultExt(QStringLiteral("txt"));
    file.ChooseFile(QStringLiteral("Save"));
    QCOMPARE(m_asked.value(0).folder, QStringLiteral("/some/folder"));
    QCOMPARE(m_asked.value(0).defaultExtension, QStringLiteral("txt"));
}

void TestFileObjectReading::theFilterFollowsTheName()
{
    const Fixture fixture;
    choose(QStringLiteral("x"));
    clsFileObject file;
    file.setPathname(QStringLiteral("c:\\sounds\\a.wav"));
    file.ChooseFile(QStringLiteral("Open"));
    QCOMPARE(m_asked.value(0).filter,
             QStringLiteral("Audio Files (*.WAV)|*.WAV|All Files (*.*)|*.*"));
}

void TestFileObjectReading::cancelIsReportedAndKeepsTheName()
{
    Fixture fixture;
    choose(std::nullopt);
    fixture.boxes.expect(QStringLiteral("Error 3101 (no filename chosen)\r\n"
                                        "user pressed cancel\r\n"
                                        " from KELDO-X Control Program\r\n"
                                        " in clsFileObject.ChooseFile\r\n"),
                         MessageBox::Exclamation);
    clsFileObject file;
    file.setPathname(QStringLiteral("kept.txt"));
    file.ChooseFile(QStringLiteral("Open"));
    QVERIFY(!file.success());
    QCOMPARE(file.pathname(), QStringLiteral("kept.txt"));
}

void TestFileObjectReading::anotherModeIsReported()
{
    Fixture fixture;
    choose(QStringLiteral("x"));
    fixture.boxes.expectStart(QStringLiteral("Error 5 ("));
    clsFileObject file;
    file.ChooseFile(QStringLiteral("Print"));
    QVERIFY(!file.success());
    QVERIFY(m_asked.isEmpty());
}

void TestFileObjectReading::linesComeWithoutTheirBreaks()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(made(folder, "one\r\n\r\n two \nthree"));
    file.OpenForInput();
    QVERIFY(file.success() && file.isOpen());
    QVERIFY(file.fileNumber() != 0);
    QStringList lines;
    while (!file.EndOfFile())
        lines.append(file.Line_Input());
    QCOMPARE(lines, (QStringList{QStringLiteral("one"), QString(), QStringLiteral(" two "),
                                 QStringLiteral("three")}));
    file.closeFile();
    QVERIFY(file.success() && !file.isOpen());
    QCOMPARE(file.fileNumber(), std::int16_t{0});
}

void TestFileObjectReading::aClosedFileGivesNothing()
{
    const Fixture fixture; // no box either
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(made(folder, "one\r\n"));
    QCOMPARE(file.Line_Input(), QString());
    QVERIFY(file.EndOfFile());
}

void TestFileObjectReading::readingPastTheEndIsReported()
{
    Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(made(folder, "one\r\n"));
    file.OpenForInput();
    file.Line_Input();
    QVERIFY(file.success());
    fixture.boxes.expectStart(QStringLiteral("Error 62 ("));
    QCOMPARE(file.Line_Input(), QString());
    QVERIFY(!file.success());
    QVERIFY(fixture.boxes.texts().value(0).endsWith(
        QStringLiteral(" in clsFileObject.Line_Input\r\n"
                       "There was an error while attempting to read the file")));
}

void TestFileObjectReading::aChosenFileIsReadWhole_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("empty") << QByteArray() << QStringList();
    QTest::newRow("one break") << QByteArray("\r\n") << QStringList{QString()};
    QTest::newRow("last line open")
        << QByteArray("a\r\nb") << QStringList{QStringLiteral("a"), QStringLiteral("b")};
}

void TestFileObjectReading::aChosenFileIsReadWhole()
{
    QFETCH(const QByteArray, content);
    const Fixture fixture;
    const QTemporaryDir folder;
    choose(made(folder, content));
    clsFileObject file;
    QTEST(file.ReadTextFileIntoArrayOfStrings(), "lines");
    QVERIFY(file.success());
    QVERIFY(!file.isOpen());
    QCOMPARE(m_asked.value(0).mode, FileChooser::Mode::Open);
}

void TestFileObjectReading::readingAfterCancelGivesNothing()
{
    Fixture fixture;
    const QTemporaryDir folder;
    choose(std::nullopt);
    fixture.boxes.expectStart(QStringLiteral("Error 3101 ("));
    clsFileObject file;
    file.setPathname(made(folder, "not this one\r\n"));
    QCOMPARE(file.ReadTextFileIntoArrayOfStrings(), QStringList());
    QVERIFY(!file.success());
}

void TestFileObjectReading::aFileThatCannotBeOpenedIsReportedAsAReadError()
{
    Fixture fixture;
    const QTemporaryDir folder;
    choose(folder.filePath(QStringLiteral("missing.txt")));
    fixture.boxes.expectStart(QStringLiteral("Error 75 ("));
    clsFileObject file;
    QCOMPARE(file.ReadTextFileIntoArrayOfStrings(), QStringList());
    QVERIFY(!file.success());
    QVERIFY(fixture.boxes.texts().value(0).endsWith(
        QStringLiteral(" in clsFileObject.ReadTextFileIntoArrayOfStrings\r\n"
                       "There was an error while attempting to read the file")));
}

void TestFileObjectReading::readOnlyTakesTheRightToWrite()
{
    const Fixture fixture;
    const QTemporaryDir folder;
    clsFileObject file;
    file.setPathname(made(folder, "x"));
    file.MakeReadOnly();
    QVERIFY(file.success());
    const auto rights = QFile::permissions(file.pathname());
    QVERIFY(!(rights & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther)));
    QVERIFY(rights & QFile::ReadOwner);
}

void TestFileObjectReading::readOnlyNeedsAFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("error");
    QTest::newRow("no name") << ""
                             << "Error 52 (";
    QTest::newRow("no file") << "missing.txt"
                             << "Error 75 (";
}

void TestFileObjectReading::readOnlyNeedsAFile()
{
    QFETCH(const QString, name);
    QFETCH(const QString, error);
    Fixture fixture;
    const QTemporaryDir folder;
    fixture.boxes.expectStart(error);
    clsFileObject file;
    file.setPathname(name.isEmpty() ? name : folder.filePath(name));
    file.MakeReadOnly();
    QVERIFY(!file.success());
    QVERIFY(fixture.boxes.texts().value(0).contains(
        QStringLiteral(" in clsFileObject.MakeReadOnly\r\n")));
}

KELDOX_TEST(TestFileObjectReading)
#include "TestFileObjectReading.moc"
