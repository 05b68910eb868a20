// Small screens and large fonts: every window can be used whole, with scroll bars where its content
// has no room.
#include "MainBench.h"

#include "ui/connect/frmConnectToComport.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmInputBox.h"
#include "ui/dialogs/frmOperation.h"
#include "ui/dialogs/frmPasswordBox.h"
#include "widgets/ScrollPane.h"
#include "widgets/WindowPlace.h"

class TestRoomOnScreen : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theMainWindowFits_data();
    void theMainWindowFits();
    void aDialogFits_data();
    void aDialogFits();
    void theEntryBoxesFit_data();
    void theEntryBoxesFit();
    void theFrequencyBoxStandsBelowTheSlider();
    void theInstructionsNameTheWindowOfTheOutputControls();
    void oneFontEverywhere();

private:
    QFont m_usual;
};

// A screen of 800 by 600 with its panel and a window's frame, and the same at 200 %.
static const QSize smallScreen(784, 520);
static const QSize halfScreen(384, 250);

void TestRoomOnScreen::init()
{
    m_usual = QApplication::font();
}

void TestRoomOnScreen::cleanup()
{
    QApplication::setFont(m_usual);
}

static void addRooms()
{
    QTest::addColumn<int>("points"); // 0 leaves the font
    QTest::addColumn<QSize>("room");
    QTest::newRow("800x600") << 0 << smallScreen;
    QTest::newRow("200 %") << 0 << halfScreen;
    QTest::newRow("20 pt") << 20 << smallScreen;
}

static void useFont(int points)
{
    QFont font = QApplication::font();
    if (points)
        font.setPointSize(points);
    QApplication::setFont(font);
}

static void savePicture(QWidget &window, const QString &name)
{
    const QString folder = qEnvironmentVariable("KELDOX_PICTURES");
    if (!folder.isEmpty())
        window.grab().save(folder + QLatin1Char('/') + name.simplified().remove(QLatin1Char(' ')) +
                           QStringLiteral(".png"));
}

// The window takes no more than the room, and each control is in view, or is once it is scrolled
// to.
static void checkReach(QWidget &window, const QSize &room)
{
    const QSize screen = window.screen()->availableGeometry().size();
    QVERIFY2(window.width() <= screen.width() && window.height() <= screen.height(),
             "larger than its screen when it is shown");
    window.resize(room);
    QTest::qWait(1);
    QVERIFY2(window.width() <= room.width(), qPrintable(QString::number(window.width())));
    QVERIFY2(window.height() <= room.height(), qPrintable(QString::number(window.height())));
    for (QWidget *control : window.findChildren<QWidget *>()) {
        const bool counts = qobject_cast<QAbstractButton *>(control) ||
                            qobject_cast<QLineEdit *>(control) || qobject_cast<QLabel *>(control);
        if (!counts || !control->isVisible() || control->objectName().startsWith("qt_") ||
            qobject_cast<QAbstractButton *>(control->parentWidget()))
            continue;
        for (QWidget *above = control->parentWidget(); above; above = above->parentWidget())
            if (auto *area = qobject_cast<QScrollArea *>(above); area && area != control)
                area->ensureWidgetVisible(control, 0, 0);
        QVERIFY2(!control->visibleRegion().isEmpty(), qPrintable(control->objectName()));
        const QWidget *place = control->parentWidget();
        QVERIFY2(place->rect().intersects(control->geometry()), qPrintable(control->objectName()));
    }
}

void TestRoomOnScreen::theMainWindowFits_data()
{
    addRooms();
}

void TestRoomOnScreen::theMainWindowFits()
{
    QFETCH(const int, points);
    QFETCH(const QSize, room);
    useFont(points);
    ConnectedBench bench;
    checkReach(*bench.window, room);
    savePicture(*bench.window,
                QStringLiteral("main-") + QString::fromLatin1(QTest::currentDataTag()));
    // Where there is room nothing scrolls.
    const auto *pane = bench.window->findChild<ScrollPane *>();
    bench.window->resize(pane->sizeHint() + QSize(0, 200));
    QTRY_VERIFY(!pane->verticalScrollBar()->isVisible());
    QVERIFY(!pane->horizontalScrollBar()->isVisible());
}

void TestRoomOnScreen::aDialogFits_data()
{
    addRooms();
}

void TestRoomOnScreen::aDialogFits()
{
    QFETCH(const int, points);
    QFETCH(const QSize, room);
    useFont(points);
    const Fixture fixture;
    frmOperation operation;
    frmAbout about;
    frmContact contact;
    frmConnectToComport connectDialog;
    for (QDialog *dialog :
         {static_cast<QDialog *>(&operation), static_cast<QDialog *>(&about),
          static_cast<QDialog *>(&contact), static_cast<QDialog *>(&connectDialog)}) {
        dialog->setAttribute(Qt::WA_DeleteOnClose, false);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        checkReach(*dialog, room);
        // The button that closes it needs no scrolling.
        for (const QPushButton *button : dialog->findChildren<QPushButton *>())
            QVERIFY2(
                dialog->rect().contains(QRect(button->mapTo(dialog, QPoint()), button->size())),
                qPrintable(dialog->objectName()));
        savePicture(*dialog, dialog->objectName() + QString::fromLatin1(QTest::currentDataTag()));
        dialog->close();
    }
}

void TestRoomOnScreen::theEntryBoxesFit_data()
{
    addRooms();
}

void TestRoomOnScreen::theEntryBoxesFit()
{
    QFETCH(const int, points);
    QFETCH(const QSize, room);
    useFont(points);
    const Fixture fixture;
    frmInputBox input;
    input.setText(QStringLiteral("Enter an interval (in milliseconds)"));
    frmPasswordBox password;
    int shown = 0;
    for (QWidget *box : QApplication::topLevelWidgets()) {
        if (box->objectName() != QStringLiteral("frmInputBox") &&
            box->objectName() != QStringLiteral("frmPasswordBox"))
            continue;
        ++shown;
        box->show();
        QVERIFY(QTest::qWaitForWindowExposed(box));
        checkReach(*box, room);
        savePicture(*box, box->objectName() + QString::fromLatin1(QTest::currentDataTag()));
        box->hide();
    }
    QCOMPARE(shown, 2);
}

// As the operating instructions say: "Type ... in the box below the slider."
void TestRoomOnScreen::theFrequencyBoxStandsBelowTheSlider()
{
    MainBench bench;
    bench.show();
    const auto top = [&](const QWidget *control) {
        return control->mapTo(bench.window.get(), QPoint()).y();
    };
    QVERIFY(top(bench.frequency()) >= top(bench.slider()) + bench.slider()->height());
    QVERIFY(top(bench.find<QLabel>("lblPressEnter")) > top(bench.frequency()));
    QVERIFY(top(bench.find<QLineEdit>("txtFreq_1")) > top(bench.slider()));
}

void TestRoomOnScreen::theInstructionsNameTheWindowOfTheOutputControls()
{
    const MainBench bench;
    const frmOperation operation;
    const QString where = operation.findChild<QLabel *>(QStringLiteral("lblWhere"))->text();
    QString entry = bench.entry("mnuShowChannels")->text();
    QVERIFY(where.contains(entry.remove(QLatin1Char('&'))));
    QVERIFY(where.contains(bench.entry("mnuShowChannels")->shortcut().toString()));
    QVERIFY(where.contains(QStringLiteral("channels window")));
}

// Arial where it always was: connect dialog, entry boxes and instructions. Nowhere else a second
// one.
void TestRoomOnScreen::oneFontEverywhere()
{
    MainBench bench;
    bench.show();
    const frmAbout about;
    const frmContact contact;
    for (const QWidget *window :
         {static_cast<const QWidget *>(bench.window.get()), static_cast<const QWidget *>(&about),
          static_cast<const QWidget *>(&contact)})
        for (const QWidget *control : window->findChildren<QWidget *>())
            QVERIFY2(control->font().family() == QApplication::font().family(),
                     qPrintable(control->objectName()));
}

KELDOX_TEST(TestRoomOnScreen)
#include "TestRoomOnScreen.moc"
