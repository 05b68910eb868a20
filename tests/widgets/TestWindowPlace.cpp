// Windows come back where they were left, on a screen that is there.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/Application.h"
#include "platform/SettingsStore.h"
#include "widgets/ScrollPane.h"
#include "widgets/SearchStrip.h"
#include "widgets/WindowPlace.h"

#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

class TestWindowPlace : public QObject
{
    Q_OBJECT

private slots:
    void aWindowComesBackWhereItWasLeft();
    void aMaximizedWindowComesBackMaximized();
    void aNonsensePlaceIsIgnored_data();
    void aNonsensePlaceIsIgnored();
    void aPlaceLargerThanTheScreenIsMadeToFit();
    void eachWindowHasAPlaceOfItsOwn();
    void settingsThatCannotBeWrittenAreNoMatter();
    void aSearchsStripIsNoPartOfThePlace();
    void aStripInAWindowAsHighAsItsScreen();
    void aStripLetsAMaximizedWindowBe();
    void aPaneShowsItsContentWholeAndScrollsWhenItMust();
};

static QString stored()
{
    return SettingsStore::read(applicationTitle(), QStringLiteral("Settings"),
                               QStringLiteral("Geometry main"));
}

static void store(const QString &text)
{
    SettingsStore::write(applicationTitle(), QStringLiteral("Settings"),
                         QStringLiteral("Geometry main"), text);
}

void TestWindowPlace::aWindowComesBackWhereItWasLeft()
{
    const Fixture fixture;
    {
        QWidget window;
        WindowPlace::keep(window, QStringLiteral("main"));
        window.show();
        window.move(130, 90);
        window.resize(420, 310);
        window.close();
    }
    QCOMPARE(stored(), QStringLiteral("130 90 420 310"));
    QWidget window;
    WindowPlace::keep(window, QStringLiteral("main"));
    QCOMPARE(window.pos(), QPoint(130, 90));
    QCOMPARE(window.size(), QSize(420, 310));
    window.show();
    window.move(140, 95);
    window.hide();
    QCOMPARE(stored(), QStringLiteral("140 95 420 310"));
    window.show();
    window.move(150, 95);
    {
        QWidget other; // that a window is still open when the program ends is no hindrance
        WindowPlace::keep(other, QStringLiteral("main"));
        other.show();
        other.move(160, 100);
    }
    QCOMPARE(stored(), QStringLiteral("160 100 420 310"));
}

void TestWindowPlace::aMaximizedWindowComesBackMaximized()
{
    const Fixture fixture;
    {
        QWidget window;
        WindowPlace::keep(window, QStringLiteral("main"));
        window.setGeometry(130, 90, 420, 310);
        window.show();
        window.showMaximized();
        window.close();
    }
    QVERIFY(stored().endsWith(QStringLiteral(" maximized")));
    QWidget window;
    WindowPlace::keep(window, QStringLiteral("main"));
    QVERIFY(window.isMaximized());
}

void TestWindowPlace::aNonsensePlaceIsIgnored_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("words") << "here and there also";
    QTest::newRow("three numbers") << "10 10 400";
    QTest::newRow("no size") << "10 10 0 0";
    QTest::newRow("negative size") << "10 10 -400 -300";
    QTest::newRow("huge") << "10 10 999999 999999";
    QTest::newRow("overflow") << "99999999999 10 400 300";
    QTest::newRow("a screen that is gone") << "5000 100 400 300";
    QTest::newRow("above the screen") << "100 -200 400 300";
    QTest::newRow("binary") << QString(QChar(0)) + QStringLiteral("\x01\xd9\xd0\xcb");
}

void TestWindowPlace::aNonsensePlaceIsIgnored()
{
    QFETCH(const QString, text);
    const Fixture fixture;
    store(text);
    QWidget window;
    window.resize(200, 150);
    const QPoint place = window.pos();
    WindowPlace::keep(window, QStringLiteral("main"));
    QCOMPARE(window.size(), QSize(200, 150));
    QCOMPARE(window.pos(), place);
    store({});
}

void TestWindowPlace::aPlaceLargerThanTheScreenIsMadeToFit()
{
    const Fixture fixture;
    store(QStringLiteral("0 0 3000 2000"));
    QWidget window;
    WindowPlace::keep(window, QStringLiteral("main"));
    // Its caption's middle is off the screen: the place as a whole is ignored.
    QVERIFY(window.width() < 3000);
    store(QStringLiteral("0 0 1500 2000"));
    QWidget other;
    WindowPlace::keep(other, QStringLiteral("main"));
    QVERIFY(other.screen()->availableGeometry().contains(QRect(other.pos(), other.size())));
    store({});
}

void TestWindowPlace::eachWindowHasAPlaceOfItsOwn()
{
    QCOMPARE(WindowPlace::key(QStringLiteral("channels")), QStringLiteral("Geometry channels"));
    const Fixture fixture;
    store(QStringLiteral("130 90 420 310"));
    QWidget window;
    window.resize(200, 150);
    WindowPlace::keep(window, QStringLiteral("channels"));
    QCOMPARE(window.size(), QSize(200, 150));
    store({});
}

void TestWindowPlace::settingsThatCannotBeWrittenAreNoMatter()
{
    const Fixture fixture; // no message box is expected
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/dev/null/nowhere");
    {
        QWidget window;
        WindowPlace::keep(window, QStringLiteral("main"));
        window.show();
        window.close();
    }
    qputenv("XDG_CONFIG_HOME", before);
    QCOMPARE(stored(), QString());
}

void TestWindowPlace::aSearchsStripIsNoPartOfThePlace()
{
    const Fixture fixture;
    {
        QMainWindow window;
        SearchStrip strip(&window);
        WindowPlace::keep(window, QStringLiteral("main"));
        window.show();
        window.move(130, 90);
        window.resize(420, 310);
        strip.say(QStringLiteral("Looking at COM7."));
        QVERIFY(window.height() > 310);
        window.close(); // in the middle of the search
        QCOMPARE(stored(), QStringLiteral("130 90 420 310"));
        strip.say({});
        QCOMPARE(window.height(), 310);
    }
    QMainWindow window;
    SearchStrip strip(&window);
    strip.say(QStringLiteral("Looking at COM7.")); // before its window came back
    const int passing = passingHeight(window);
    QVERIFY(passing > 0);
    WindowPlace::keep(window, QStringLiteral("main"));
    QCOMPARE(window.size(), QSize(420, 310 + passing));
    strip.say({});
    QCOMPARE(window.size(), QSize(420, 310));
    store({});
}

// Where the screen has no room for the strip beside what was kept, nothing is taken back with it.
void TestWindowPlace::aStripInAWindowAsHighAsItsScreen()
{
    const Fixture fixture;
    QMainWindow window;
    const int room = roomOnScreen(window).height();
    store(QStringLiteral("0 0 420 %1").arg(room));
    SearchStrip strip(&window);
    strip.say(QStringLiteral("Looking at COM7."));
    WindowPlace::keep(window, QStringLiteral("main"));
    QCOMPARE(window.height(), room);
    strip.say({});
    QCOMPARE(window.height(), room);
    store({});
}

// Maximized while the strip is shown, the window cannot give its room back before it is normal.
void TestWindowPlace::aStripLetsAMaximizedWindowBe()
{
    const Fixture fixture;
    QMainWindow window;
    SearchStrip strip(&window);
    WindowPlace::keep(window, QStringLiteral("main"));
    window.show();
    window.move(130, 90);
    window.resize(420, 310);
    strip.say(QStringLiteral("Looking at COM7."));
    const int grown = window.height();
    QVERIFY(grown > 310);
    window.showMaximized();
    strip.say({});
    window.hide();
    QCOMPARE(stored(), QStringLiteral("130 90 420 310 maximized"));
    window.showNormal();
    strip.say(QStringLiteral("Looking at COM8."));
    QCOMPARE(window.height(), grown);
    strip.say({});
    QCOMPARE(window.height(), 310);
    store({});
}

void TestWindowPlace::aPaneShowsItsContentWholeAndScrollsWhenItMust()
{
    QMainWindow window;
    auto *content = new QWidget;
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    auto *picture = new QLabel(content);
    picture->setFixedSize(600, 400);
    column->addWidget(picture);
    window.setCentralWidget(content);
    const auto *pane = ScrollPane::wrap(window);
    window.adjustSize();
    window.resize(pane->sizeHint());
    window.show();
    QTRY_VERIFY(!pane->verticalScrollBar()->isVisible());
    QVERIFY(!pane->horizontalScrollBar()->isVisible());
    window.resize(300, 200);
    QCOMPARE(window.size(), QSize(300, 200));
    QTRY_VERIFY(pane->verticalScrollBar()->isVisible());
    QVERIFY(pane->horizontalScrollBar()->isVisible());
    QCOMPARE(content->size(), QSize(600, 400));
}

KELDOX_TEST(TestWindowPlace)
#include "TestWindowPlace.moc"
