// The operator's road on bad days: a search that is watched and ended, a device that comes back,
// and a program that is asked to end in the middle of something.
#include "Road.h"

#include "app/PoliteEnd.h"
#include "app/Progress.h"
#include "device/clsKeldoX.h"
#include "platform/SettingsStore.h"
#include "platform/TestHooks.h"
#include "sim/SimulatedLine.h"
#include "widgets/SearchStrip.h"

#include <csignal>

using namespace road;

class TestRoadOfBadLines : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theStripSaysWhereTheSearchIs();
    void cancelEndsTheSearchFromEitherWindow_data();
    void cancelEndsTheSearchFromEitherWindow();
    void escapeEndsAConnectionFromAChannelsButton();
    void theDeviceIsConnectedAgainWhenItReturns();
    void itIsNotConnectedAgainUnlessThatIsSwitchedOn();
    void aPoliteRequestEndsTheProgramInEveryState_data();
    void aPoliteRequestEndsTheProgramInEveryState();
    void qtsOwnQuitIsPoliteToo();

private:
    sim::SimulatedLine &plug(int number);
    void search() { trigger(mainName, "mnuConnectComport"); }
    static SearchStrip *strip(const char *windowName)
    {
        return window(windowName)->findChild<SearchStrip *>();
    }

    std::map<int, std::unique_ptr<sim::SimulatedLine>> m_lines;
    std::unique_ptr<Fixture> m_fixture;
};

void TestRoadOfBadLines::init()
{
    // After a road that has ended "the program", loops start only when they run again.
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
    QApplication::exec();
    m_fixture = std::make_unique<Fixture>();
    startProgram();
}

void TestRoadOfBadLines::cleanup()
{
    m_fixture.reset();
    m_lines.clear();
}

// A line with a unit under this number.
sim::SimulatedLine &TestRoadOfBadLines::plug(int number)
{
    auto &line = m_lines[number];
    line = std::make_unique<sim::SimulatedLine>();
    line->addUnit(std::make_shared<sim::SimulatedUnit>());
    m_fixture->plug(number, line->device());
    return *line;
}

void TestRoadOfBadLines::theStripSaysWhereTheSearchIs()
{
    plug(2);
    plug(5).setFault(sim::Fault::Silence);
    plug(9);
    QStringList said;
    QMap<QByteArray, int> heights{{mainName, window(mainName)->height()}, {channelsName, 0}};
    QTimer::singleShot(700, this, [&] {
        for (const char *name : {mainName, channelsName}) {
            QVERIFY(strip(name)->isVisible());
            // Its line is there to be read, and the window has made room for it.
            const auto *line = strip(name)->findChild<QLabel *>(QStringLiteral("lblSearchStrip"));
            QVERIFY(line->width() > line->fontMetrics().horizontalAdvance(QStringLiteral(
                                        "Looking at COM5 (1, linked as com5), port 2 of 3.")));
            QVERIFY(window(name)->height() > heights.value(name));
            said.append(strip(name)->text());
            picture(name, name == mainName ? "search-strip-main" : "search-strip-channels");
        }
    });
    search();
    QCOMPARE(said.size(), 2);
    QCOMPARE(said.at(0), said.at(1));
    QVERIFY2(said.at(0).startsWith(QStringLiteral("Looking at COM5 (")), qPrintable(said.at(0)));
    QVERIFY2(said.at(0).endsWith(QStringLiteral(", port 2 of 3. Units found: 1.")),
             qPrintable(said.at(0)));
    for (const char *name : {mainName, channelsName})
        QVERIFY(!strip(name)->isVisible());
    QCOMPARE(window(mainName)->height(), heights.value(mainName));
    QCOMPARE(int(app().foundUnits), 2);
}

void TestRoadOfBadLines::cancelEndsTheSearchFromEitherWindow_data()
{
    QTest::addColumn<QByteArray>("windowName");
    QTest::addColumn<bool>("byKey");
    QTest::addRow("main, button") << QByteArray(mainName) << false;
    QTest::addRow("main, Escape") << QByteArray(mainName) << true;
    QTest::addRow("channels, button") << QByteArray(channelsName) << false;
    QTest::addRow("channels, Escape") << QByteArray(channelsName) << true;
}

void TestRoadOfBadLines::cancelEndsTheSearchFromEitherWindow()
{
    QFETCH(const QByteArray, windowName);
    QFETCH(const bool, byKey);
    plug(2).setFault(sim::Fault::Silence);
    plug(5);
    QElapsedTimer sinceCancel;
    QTimer::singleShot(300, this, [&] {
        sinceCancel.start();
        QWidget *shown = window(windowName.constData());
        shown->activateWindow();
        if (byKey)
            QTest::keyClick(shown, Qt::Key_Escape);
        else
            QTest::mouseClick(shown->findChild<QPushButton *>(QStringLiteral("cmdCancelSearch")),
                              Qt::LeftButton);
    });
    search(); // and no box follows
    QVERIFY(sinceCancel.isValid());
    QVERIFY(sinceCancel.elapsed() < 1000);
    QCOMPARE(int(app().foundUnits), 0);
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    QVERIFY(app().guard().isUp());
    QVERIFY(!strip(mainName)->isVisible());
}

void TestRoadOfBadLines::escapeEndsAConnectionFromAChannelsButton()
{
    plug(2);
    plug(5);
    search();
    QCOMPARE(int(app().foundUnits), 2);
    m_lines.at(5)->setFault(sim::Fault::Silence);
    QElapsedTimer sinceEscape;
    QString said;
    QTimer::singleShot(300, this, [&] {
        said = strip(channelsName)->text();
        sinceEscape.start();
        QTest::keyClick(window(channelsName), Qt::Key_Escape);
    });
    auto *option = control<QAbstractButton>(channelsName, "optPortNum_2");
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
    QVERIFY(sinceEscape.isValid());
    QVERIFY(sinceEscape.elapsed() < 1000);
    QVERIFY2(said.startsWith(QStringLiteral("Connecting channel 2 on COM5")), qPrintable(said));
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    QVERIFY(!strip(channelsName)->isVisible());
}

void TestRoadOfBadLines::theDeviceIsConnectedAgainWhenItReturns()
{
    plug(5);
    search();
    trigger(mainName, "mnuReconnect");
    QVERIFY(window(mainName)->findChild<QAction *>(QStringLiteral("mnuReconnect"))->isChecked());
    m_fixture->boxes.expectStart(QStringLiteral("Error 8020"));
    m_lines.at(5)->unplug();
    QTRY_COMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    plug(5);
    TestHooks::shortenTimers(200); // between two looks at the ports
    const QString again = QStringLiteral("CONNECTED AGAIN ON COM5");
    QTRY_COMPARE_WITH_TIMEOUT(mainText("StatusBar_1"), again, 8000);
    QCOMPARE(control<QLabel>(channelsName, "StatusBar_1")->text(), again);
    QVERIFY(control<QLineEdit>(mainName, "txtCurrentFreq")->isEnabled());
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("145.5"));
    QCOMPARE(control<QLineEdit>(mainName, "txtCurrentFreq")->text(), QStringLiteral("145.5"));
    trigger(mainName, "mnuReconnect"); // kept otherwise
}

void TestRoadOfBadLines::itIsNotConnectedAgainUnlessThatIsSwitchedOn()
{
    plug(5);
    search();
    m_fixture->boxes.expectStart(QStringLiteral("Error 8020"));
    m_lines.at(5)->unplug();
    QTRY_COMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    plug(5);
    TestHooks::shortenTimers(50);
    QTest::qWait(500); // ten looks at the ports, were it switched on
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    QVERIFY(m_lines.at(5)->commands().empty());
}

void TestRoadOfBadLines::aPoliteRequestEndsTheProgramInEveryState_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<int>("number");
    QTest::addRow("idle, SIGTERM") << QByteArray() << SIGTERM;
    QTest::addRow("idle, SIGINT") << QByteArray() << SIGINT;
    QTest::addRow("idle, SIGHUP") << QByteArray() << SIGHUP;
    for (const char *state : {"search", "wait for a reply", "message box", "connect dialog",
                              "connect dialog connecting", "input box", "about", "password box"})
        QTest::addRow("%s", state) << QByteArray(state) << SIGTERM;
}

// Each entry returns once the program is ending.
void TestRoadOfBadLines::aPoliteRequestEndsTheProgramInEveryState()
{
    QFETCH(const QByteArray, state);
    QFETCH(const int, number);
    const PoliteEnd politeEnd;
    QElapsedTimer since;
    const auto ask = [&](int afterMs) {
        QTimer::singleShot(afterMs, this, [&] {
            since.start();
            std::raise(number);
        });
    };
    if (state == "wait for a reply" || state == "password box") {
        plug(5);
        search();
        m_lines.at(5)->setFault(state == "password box" ? sim::Fault::PermissionDenied
                                                        : sim::Fault::Silence);
        ask(400);
        typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"), QStringLiteral("130"));
    } else if (state == "search") {
        plug(5).setFault(sim::Fault::Silence);
        ask(400);
        search();
    } else if (state == "message box") {
        TestHooks::answerBoxes({}); // the real one
        ask(400);
        search();
    } else if (state == "connect dialog") {
        plug(5);
        plug(7);
        ask(600);
        trigger(mainName, "mnuConnectKnownComport");
    } else if (state == "connect dialog connecting") {
        plug(5).setFault(sim::Fault::Silence);
        plug(7);
        const Hand hand(
            [](QWidget *dialog) {
                QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("OKButton")),
                                  Qt::LeftButton);
            },
            [](QWidget *dialog) {
                return dialog->findChild<QPushButton *>(QStringLiteral("OKButton"))->isEnabled();
            });
        ask(1200);
        trigger(mainName, "mnuConnectKnownComport");
        QVERIFY(hand.acted);
    } else if (state == "input box") {
        ask(400);
        trigger(mainName, "mnuPollingInterval");
    } else if (state == "about") {
        ask(400);
        trigger(mainName, "mnuHelpAbout");
    } else {
        ask(10);
        QTRY_VERIFY(EventQueue::ending());
    }
    QVERIFY(since.isValid());
    QVERIFY(EventQueue::ending());
    QVERIFY2(since.elapsed() < 1000, qPrintable(QString::number(since.elapsed())));
    QVERIFY(!window(mainName) || !window(mainName)->isVisible());
    for (int slot = 1; slot <= 8; ++slot)
        if (const auto unit = app().devices[slot])
            unit->commPort()->ClosePort();
}

void TestRoadOfBadLines::qtsOwnQuitIsPoliteToo()
{
    const PoliteEnd politeEnd;
    plug(5).setFault(sim::Fault::Silence);
    QTimer::singleShot(300, this, [] {
        QEvent quit(QEvent::Quit); // what quit() and the end of a desktop session send
        QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
    });
    search();
    QVERIFY(EventQueue::ending());
}

KELDOX_TEST(TestRoadOfBadLines)
#include "TestRoadOfBadLines.moc"
