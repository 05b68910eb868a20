// What the operator can do with the display: search it, save it, see the time of each line, and
// read it in a large font.
#include "MonitorBench.h"
#include "support/TestMain.h"

#include "core/clsLogger.h"
#include "platform/TestHooks.h"
#include "widgets/FileChooser.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>

namespace {

// A shown monitor with lines to look for.
struct Searched : Machine
{
    Searched()
    {
        window.resize(500, 300);
        for (int i = 1; i <= 100; ++i)
            window.Display(QString(), QStringLiteral(" sending *STEP %1").arg(i));
        window.show();
        if (!QTest::qWaitForWindowActive(&window)) // else it hears no shortcut
            QTest::qFail("the window is not active", __FILE__, __LINE__);
    }

    template <class Control> Control *find(const char *name) const
    {
        return window.findChild<Control *>(QLatin1String(name));
    }
    QWidget *strip() const { return find<QWidget>("findStrip"); }
    QLineEdit *box() const { return find<QLineEdit>("txtFind"); }
    QString said() const { return find<QLabel>("lblFound")->text(); }
    QString selected() const { return text1(window)->textCursor().selectedText(); }
    QString selectedLine() const { return text1(window)->textCursor().block().text(); }
    void open() { QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier); }
    void lookFor(const QString &text)
    {
        box()->selectAll();
        QTest::keyClicks(box(), text);
    }
    void press(const char *button) const
    {
        QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton);
    }

    frmIODaemon window;
};

struct Saved : Machine
{
    Saved()
    {
        window.Display(QString(), QStringLiteral("one"));
        window.Display(QString(), QStringLiteral("Temperatur 20 \u00b0C"));
        TestHooks::answerChoosers([this](const FileChooser::Request &request) {
            asked.append(request);
            return answer;
        });
    }
    ~Saved() { TestHooks::answerChoosers({}); }

    void save() { entry(window, "mnuCommandSave")->trigger(); }

    QTemporaryDir folder;
    std::optional<QString> answer;
    QList<FileChooser::Request> asked;
    frmIODaemon window;
};

QByteArray contents(const QString &name)
{
    QFile file(name);
    [[maybe_unused]] const bool isThere = file.open(QIODevice::ReadOnly);
    return file.readAll();
}

} // namespace

class TestDisplayTools : public QObject
{
    Q_OBJECT

private slots:
    void theStripOpensAndCloses();
    void aTextIsFoundAsItIsTyped();
    void searchingGoesOnBackAndAround();
    void theKeyboardSearchesToo();
    void whatIsNotThereIsSaid();
    void whatIsSelectedIsLookedFor();
    void everyPlaceIsHighlighted();
    void aHiddenMonitorFindsItsStripAgain();
    void theDisplayIsSaved();
    void aCancelledSaveWritesNothing();
    void aFailedSaveSaysWhichFileAndWhy_data();
    void aFailedSaveSaysWhichFileAndWhy();
    void timesOnRequest();
    void aLoggedEventShowsItsOwnTime();
    void aLargeFontLeavesRoomForTheCommand_data();
    void aLargeFontLeavesRoomForTheCommand();
};

void TestDisplayTools::theStripOpensAndCloses()
{
    Searched on;
    QVERIFY(!on.strip()->isVisible());
    on.open();
    QVERIFY(on.strip()->isVisible());
    QTRY_VERIFY(on.window.focusWidget() == on.box());
    on.lookFor(QStringLiteral("*STEP 5"));
    QTest::keyClick(on.box(), Qt::Key_Escape);
    QVERIFY(!on.strip()->isVisible());
    QVERIFY(on.window.isVisible());
    QVERIFY(text1(on.window)->extraSelections().isEmpty());
    QCOMPARE(on.window.focusWidget(), text1(on.window));
    entry(on.window, "mnuCommandFind")->trigger();
    QVERIFY(on.strip()->isVisible());
    on.press("cmdFindClose");
    QVERIFY(!on.strip()->isVisible());
}

void TestDisplayTools::aTextIsFoundAsItIsTyped()
{
    Searched on;
    text1(on.window)->moveCursor(QTextCursor::Start);
    on.open();
    QTest::keyClicks(on.box(), QStringLiteral("*step 4"));
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 4"));
    QTest::keyClicks(on.box(), QStringLiteral("2"));
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 42"));
    QCOMPARE(on.said(), QString());
    QVERIFY(text1(on.window)->viewport()->rect().contains(text1(on.window)->cursorRect().center()));
}

void TestDisplayTools::searchingGoesOnBackAndAround()
{
    Searched on;
    text1(on.window)->moveCursor(QTextCursor::Start);
    on.open();
    on.lookFor(QStringLiteral("STEP 5"));
    on.press("cmdFindNext");
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 50"));
    on.press("cmdFindPrevious");
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 5"));
    on.press("cmdFindPrevious");
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 59"));
    QCOMPARE(on.said(), QStringLiteral("from the end"));
    on.press("cmdFindNext");
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 5"));
    QCOMPARE(on.said(), QStringLiteral("from the beginning"));
    on.press("cmdFindNext");
    QCOMPARE(on.said(), QString());
}

void TestDisplayTools::theKeyboardSearchesToo()
{
    Searched on;
    text1(on.window)->moveCursor(QTextCursor::Start);
    on.open();
    on.lookFor(QStringLiteral("STEP 5"));
    QTest::keyClick(on.box(), Qt::Key_Return);
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 50"));
    QTest::keyClick(on.box(), Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 5"));
    QTest::keyClick(&on.window, Qt::Key_F3);
    QTRY_COMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 50"));
    QTest::keyClick(&on.window, Qt::Key_F3, Qt::ShiftModifier);
    QTRY_COMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 5"));
}

void TestDisplayTools::whatIsNotThereIsSaid()
{
    Searched on;
    on.open();
    on.lookFor(QStringLiteral("STEP 42"));
    const int scrolled = text1(on.window)->verticalScrollBar()->value();
    QTest::keyClicks(on.box(), QStringLiteral("<b>"));
    QCOMPARE(on.said(), QStringLiteral("not found"));
    QCOMPARE(on.find<QLabel>("lblFound")->textFormat(), Qt::PlainText);
    QCOMPARE(text1(on.window)->verticalScrollBar()->value(), scrolled);
    on.lookFor(QStringLiteral("STEP 42"));
    QCOMPARE(on.said(), QString());
    on.box()->clear();
    on.press("cmdFindNext");
    QCOMPARE(on.said(), QString());
    QVERIFY(text1(on.window)->extraSelections().isEmpty());
}

void TestDisplayTools::whatIsSelectedIsLookedFor()
{
    Searched on;
    text1(on.window)->setTextCursor(text1(on.window)->document()->find(QStringLiteral("*STEP 7")));
    on.open();
    QCOMPARE(on.box()->text(), QStringLiteral("*STEP 7"));
    on.press("cmdFindNext");
    QCOMPARE(on.selectedLine(), QStringLiteral(" sending *STEP 70"));
}

void TestDisplayTools::everyPlaceIsHighlighted()
{
    Searched on;
    on.open();
    on.lookFor(QStringLiteral("STEP 4"));
    QCOMPARE(text1(on.window)->extraSelections().size(), 11);
    on.window.Display(QString(), QStringLiteral("step 400"));
    QTRY_COMPARE(text1(on.window)->extraSelections().size(), 12);
    on.lookFor(QStringLiteral("nowhere"));
    QVERIFY(text1(on.window)->extraSelections().isEmpty());
}

void TestDisplayTools::aHiddenMonitorFindsItsStripAgain()
{
    Searched on;
    on.open();
    on.lookFor(QStringLiteral("STEP 42"));
    on.window.close();
    on.window.show();
    QVERIFY(on.strip()->isVisible());
    QCOMPARE(text1(on.window)->extraSelections().size(), 1);
}

void TestDisplayTools::theDisplayIsSaved()
{
    Saved on;
    on.answer = on.folder.filePath(QStringLiteral("display.txt"));
    on.save();
    QCOMPARE(contents(*on.answer), QByteArray("one\r\nTemperatur 20 \xC2\xB0"
                                              "C\r\n"));
    QCOMPARE(on.asked.size(), 1);
    QCOMPARE(on.asked.first().mode, FileChooser::Mode::Save);
    QCOMPARE(on.asked.first().defaultExtension, QStringLiteral("txt"));
    QVERIFY(on.asked.first().filter.startsWith(QStringLiteral("Text Files (*.TXT)|*.TXT|")));
    // Once more, over the file of before.
    on.window.Display(QString(), QStringLiteral("two"));
    on.save();
    QVERIFY(contents(*on.answer).endsWith("two\r\n"));
}

void TestDisplayTools::aCancelledSaveWritesNothing()
{
    Saved on;
    on.save();
    QCOMPARE(on.asked.size(), 1);
    QVERIFY(QDir(on.folder.path()).isEmpty());
}

void TestDisplayTools::aFailedSaveSaysWhichFileAndWhy_data()
{
    QTest::addColumn<QString>("name");
    QTest::addRow("no such folder") << QStringLiteral("nowhere/display.txt");
    QTest::addRow("a folder of that name") << QStringLiteral("folder");
}

void TestDisplayTools::aFailedSaveSaysWhichFileAndWhy()
{
    QFETCH(const QString, name);
    Saved on;
    QVERIFY(QDir(on.folder.path()).mkdir(QStringLiteral("folder")));
    on.answer = on.folder.filePath(name);
    on.boxes.expectStart(QStringLiteral("The display cannot be saved.\r\n") +
                             QDir::toNativeSeparators(*on.answer) + QStringLiteral(": "),
                         MessageBox::Exclamation);
    on.save();
    QVERIFY(!on.boxes.texts().first().endsWith(QStringLiteral(": ")));
    QVERIFY(!on.boxes.texts().first().contains(QStringLiteral("Unknown error")));
    QVERIFY(on.window.displayText().startsWith(QStringLiteral("one\r\n")));
}

void TestDisplayTools::timesOnRequest()
{
    const Fixture fixture;
    frmIODaemon window;
    const QString source = QStringLiteral("2026-03-01 14:05:09 clsKeldoX");
    const auto shown = [&](const char *text) {
        window.Display(source, QLatin1String(text));
        return window.displayText().section(QStringLiteral("\r\n"), -2, -2);
    };
    QCOMPARE(shown("off"), QStringLiteral("off"));
    entry(window, "mnuDebugDisplayTime")->trigger();
    QCOMPARE(shown("time"), QStringLiteral("2026-03-01 14:05:09 time"));
    entry(window, "mnuDebugDisplaySource")->trigger();
    QCOMPARE(shown("both"), QStringLiteral("2026-03-01 14:05:09 clsKeldoX: both"));
    entry(window, "mnuDebugDisplayTime")->trigger();
    QCOMPARE(shown("source"), QStringLiteral("2026-03-01 14:05:09 clsKeldoX: source"));
    window.Display(source, QStringLiteral("\r\n"));
    QVERIFY(window.displayText().endsWith(QStringLiteral("source\r\n\r\n")));
}

void TestDisplayTools::aLoggedEventShowsItsOwnTime()
{
    const Fixture fixture;
    const auto window = std::make_shared<frmIODaemon>();
    clsLogger log;
    log.setDisplayWindow(window);
    entry(*window, "mnuDebugDisplayTime")->trigger();
    log.LogEvent(QStringLiteral("x"), QStringLiteral("text"), false, true);
    const QString line = window->displayText();
    const auto time = QDateTime::fromString(line.left(19), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    QVERIFY2(std::abs(time.secsTo(QDateTime::currentDateTime())) < 60, qPrintable(line));
    QCOMPARE(line.mid(19), QStringLiteral(" text\r\n"));
    // What comes without the log has the time of now.
    window->Display(QStringLiteral("FileOpen"), QStringLiteral("opening"));
    QCOMPARE(window->displayText().section(QStringLiteral("\r\n"), 1, 1).mid(19),
             QStringLiteral(" opening"));
    log.setDisplayWindow(nullptr);
}

void TestDisplayTools::aLargeFontLeavesRoomForTheCommand_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {8, 10, 20, 28})
        QTest::addRow("%d", points) << points;
}

// With KELDOX_PICTURES set to a folder it leaves pictures there.
void TestDisplayTools::aLargeFontLeavesRoomForTheCommand()
{
    QFETCH(const int, points);
    const QFont before = QApplication::font();
    const auto restore = qScopeGuard([&] { QApplication::setFont(before); });
    QFont large = before;
    large.setPointSize(points);
    QApplication::setFont(large);
    Searched on;
    on.open();
    on.lookFor(QStringLiteral("*STEP 9"));
    on.window.resize(on.window.minimumSizeHint());
    const auto *command = on.find<QComboBox>("comboCommand");
    const QFontMetrics metrics(command->font());
    QVERIFY(command->width() >= metrics.horizontalAdvance(QStringLiteral("*ATTEN OFFSET 12.5")));
    QVERIFY(command->height() >= metrics.height());
    QVERIFY(on.find<QComboBox>("comboComPort")->width() >=
            metrics.horizontalAdvance(QStringLiteral("255")) + metrics.height());
    QVERIFY(text1(on.window)->font().pointSize() >= points);
    if (const QString folder = qEnvironmentVariable("KELDOX_PICTURES");
        !folder.isEmpty() && points == 20) {
        on.window.resize(900, 700);
        QVERIFY(on.window.grab().save(folder + QStringLiteral("/io-monitor-large.png")));
    }
}

KELDOX_TEST(TestDisplayTools)
#include "TestDisplayTools.moc"
