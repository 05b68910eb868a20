// The entries Manual and Protocol reference: which page they open, and what they say where it is
// not installed. No browser is opened.
#include "MainBench.h"

#include "ui/main/HelpPages.h"

// Takes the place of the desktop's programs for files.
class Desk : public QObject
{
    Q_OBJECT

public:
    Desk() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Desk() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> opened;

public slots:
    void open(const QUrl &url) { opened.append(url); }
};

class TestHelpPages : public QObject
{
    Q_OBJECT

private slots:
    void aPageThatIsThereIsOpened();
    void aMissingPageIsNamed();
    void thePagesStandBesideTheProgram();
    void entriesShowTheirPages_data();
    void entriesShowTheirPages();
};

void TestHelpPages::aPageThatIsThereIsOpened()
{
    const Fixture fixture;
    Desk desk;
    const QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/pages with a # XXXXXX"));
    const QString page = folder.filePath(QStringLiteral("manual.html"));
    QFile file(page);
    QVERIFY(file.open(QIODevice::WriteOnly));
    showHelpPage(QStringLiteral("manual.html"), folder.path());
    QCOMPARE(desk.opened.size(), 1);
    QCOMPARE(desk.opened.first().toLocalFile(), page);
}

void TestHelpPages::aMissingPageIsNamed()
{
    Fixture fixture;
    const Desk desk;
    const QTemporaryDir folder;
    fixture.boxes.expect(QStringLiteral("This page is not installed."), MessageBox::Information);
    showHelpPage(QStringLiteral("manual.html"), folder.path());
    QVERIFY(fixture.boxes.shown().first().informative.endsWith(
        QDir::toNativeSeparators(folder.filePath(QStringLiteral("manual.html")))));
    QVERIFY(desk.opened.isEmpty());
}

void TestHelpPages::thePagesStandBesideTheProgram()
{
    const QString folder = helpFolder();
    QVERIFY(QDir::isAbsolutePath(folder));
    QVERIFY(!folder.contains(QStringLiteral("..")));
    QVERIFY(folder.startsWith(QFileInfo(QCoreApplication::applicationDirPath()).path()));
}

void TestHelpPages::entriesShowTheirPages_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("page");
    QTest::newRow("manual") << "mnuHelpManual"
                            << "manual.html";
    QTest::newRow("protocol") << "mnuHelpProtocol"
                              << "protocol.html";
}

// The pages of this build are there where pandoc is.
void TestHelpPages::entriesShowTheirPages()
{
    QFETCH(const QString, entry);
    QFETCH(const QString, page);
    MainBench bench;
    const Desk desk;
    const QString file = QDir(helpFolder()).filePath(page);
    const bool isThere = QFile::exists(file);
    if (!isThere)
        bench.boxes().expect(QStringLiteral("This page is not installed."));
    bench.entry(qPrintable(entry))->trigger();
    if (isThere)
        QCOMPARE(desk.opened, QList<QUrl>{QUrl::fromLocalFile(file)});
    else
        QVERIFY(bench.boxes().shown().last().informative.endsWith(QDir::toNativeSeparators(file)));
}

KELDOX_TEST(TestHelpPages)
#include "TestHelpPages.moc"
