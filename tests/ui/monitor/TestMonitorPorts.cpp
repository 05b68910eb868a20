// The monitor's list of ports beside a search for units: whichever begins first, both end well, and
// no port is held open while the program turns to something else.
#include "MonitorBench.h"
#include "support/DeniedLine.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include "discovery/PortSearch.h"

#include <QComboBox>
#include <QSerialPort>
#include <QTimer>

namespace {

// The real monitor on a machine with something on COM 1, a unit on COM 2 and a silent line last.
struct Site
{
    Site()
    {
        search.answerAlways(1, "something else");
        search.unit(2);
        search.answerAlways(250, "something else");
        app().makers.ioMonitor = [this] { return window; };
        app().ioMonitor();
    }

    QComboBox *ports() const
    {
        return window->findChild<QComboBox *>(QStringLiteral("comboComPort"));
    }
    QStringList listed() const
    {
        QStringList all;
        for (int i = 0; i < ports()->count(); ++i)
            all.append(ports()->itemText(i));
        return all;
    }
    bool isFree(int port)
    {
        QSerialPort other(QString::fromStdString(search.line(port).device()));
        return other.open(QIODevice::ReadWrite);
    }

    SearchBench search;
    std::shared_ptr<frmIODaemon> window = std::make_shared<frmIODaemon>();
    const QStringList expected{QStringLiteral(" 1"), QStringLiteral(" 2")}; // the last is left out
};

} // namespace

class TestMonitorPorts : public QObject
{
    Q_OBJECT

private slots:
    void noPortIsHeldWhileOthersHaveTheirTurn();
    void aSearchBegunDuringTheListing();
    void aListingAskedForDuringASearch();
    void aMonitorClosedMeanwhileListsNothing();
    void theListFollowsWhatIsPluggedInAndSaysWhatIsRefused();
    void aPortWithoutAccessRightIsNamed();
    void aListThatFollowsReportsNothing();
};

void TestMonitorPorts::noPortIsHeldWhileOthersHaveTheirTurn()
{
    Site site;
    int tries = 0;
    QStringList held;
    QTimer others;
    connect(&others, &QTimer::timeout, this, [&] {
        if (site.ports()->isEnabled()) // not listing
            return;
        ++tries;
        for (const int port : {1, 2, 250})
            if (!site.isFree(port))
                held.append(QString::number(port));
    });
    others.start(0);
    site.window->show();
    QTRY_COMPARE(site.listed(), site.expected);
    QTRY_VERIFY(site.ports()->isEnabled());
    QVERIFY(tries >= 2);
    QCOMPARE(held, QStringList());
}

void TestMonitorPorts::aSearchBegunDuringTheListing()
{
    Site site;
    bool begun = false;
    QTimer operatorsHand;
    connect(&operatorsHand, &QTimer::timeout, this, [&] {
        if (begun || site.ports()->isEnabled())
            return;
        begun = true;
        SearchPorts(1);
        QVERIFY(!site.ports()->isEnabled()); // still listing, below
    });
    operatorsHand.start(0);
    site.window->show();
    QTRY_VERIFY_WITH_TIMEOUT(begun && site.ports()->isEnabled(), 10000);
    QCOMPARE(site.listed(), site.expected);
    // No port was in the other one's hands.
    QCOMPARE(
        site.search.logOf(QStringLiteral("SearchPorts")).filter(QStringLiteral("is already open")),
        QStringList());
    QCOMPARE(app().foundUnits, std::int16_t(1));
    QVERIFY(app().searchFinished);
    QVERIFY(!app().search);
    for (const int port : {1, 250})
        QVERIFY(site.isFree(port));
    // And it can be listed again.
    site.window->close();
    site.ports()->clear();
    site.window->show();
    QTRY_COMPARE(site.listed(), site.expected);
}

void TestMonitorPorts::aListingAskedForDuringASearch()
{
    Site site;
    int listedWhileSearching = -1;
    site.search.channels->onProgress = [&](int) {
        site.window->show();
        QCoreApplication::processEvents();
        if (app().search)
            listedWhileSearching = site.ports()->count();
    };
    SearchPorts(1);
    QCOMPARE(listedWhileSearching, 0);
    QCOMPARE(app().foundUnits, std::int16_t(1));
    QVERIFY(app().searchFinished);
    // It was not forgotten.
    QTRY_COMPARE(site.listed(), site.expected);
    QTRY_VERIFY(site.ports()->isEnabled());
}

void TestMonitorPorts::aMonitorClosedMeanwhileListsNothing()
{
    Site site;
    app().search = makeSearch();
    site.window->show();
    QCoreApplication::processEvents();
    site.window->close();
    app().search.reset();
    QTest::qWait(50);
    QCOMPARE(site.ports()->count(), 0);
}

void TestMonitorPorts::theListFollowsWhatIsPluggedInAndSaysWhatIsRefused()
{
    Site site;
    QSerialPort holder(QString::fromStdString(site.search.line(1).device()));
    QVERIFY(holder.open(QIODevice::ReadWrite));
    site.window->show();
    QTRY_COMPARE(site.listed(), site.expected);
    QTRY_VERIFY(!site.search.logOf(QStringLiteral("IO monitor"))
                     .filter(QStringLiteral("COM1: "))
                     .filter(QStringLiteral(" is open in this program already"))
                     .isEmpty());
    QVERIFY(site.ports()
                ->itemData(1, Qt::AccessibleTextRole)
                .toString()
                .contains(QStringLiteral("linked as com2")));
    site.ports()->setEditText(QStringLiteral("77"));
    site.search.answerAlways(9, "something else");
    QTRY_COMPARE_WITH_TIMEOUT(site.listed().size(), 3, 5000);
    QCOMPARE(site.ports()->currentText(), QStringLiteral("77"));
    // The last ones gone, the list is empty and no box reports it.
    for (const int port : {1, 2, 9, 250})
        site.search.fixture.unplug(port);
    QTRY_VERIFY_WITH_TIMEOUT(site.listed().isEmpty(), 5000);
    QVERIFY(!site.ports()->isEnabled());
}

void TestMonitorPorts::aPortWithoutAccessRightIsNamed()
{
    Site site;
    const QString device = QString::fromStdString(site.search.line(4).device());
    DeniedLine::install(device);
    const QString told = QStringLiteral("COM4: ") + DeniedLine::told(device);
    const auto timesTold = [&] {
        return site.search.logOf(QStringLiteral("IO monitor")).count(told);
    };
    site.window->show();
    QTRY_COMPARE(site.listed(), site.expected);
    QTRY_COMPARE(timesTold(), 1);
    QTRY_VERIFY(site.ports()->isEnabled());
    site.ports()->setEditText(QStringLiteral("4"));
    QTest::mouseClick(site.window->findChild<QPushButton *>(QStringLiteral("cmdConnect")),
                      Qt::LeftButton);
    QCOMPARE(timesTold(), 2);
    QVERIFY(!site.window->windowTitle().contains(QStringLiteral("COM4")));
}

// Shown without a port that opens it reports so, once.
void TestMonitorPorts::aListThatFollowsReportsNothing()
{
    Site site;
    const QString device = QString::fromStdString(site.search.line(4).device());
    DeniedLine::install(device);
    for (const int port : {1, 2, 4, 250})
        site.search.fixture.unplug(port);
    site.search.fixture.boxes.expectStart(QStringLiteral("Error 5 "));
    site.window->show();
    QTRY_VERIFY(site.search.fixture.boxes.allShown());
    site.search.fixture.plug(4, device);
    QTRY_VERIFY_WITH_TIMEOUT(site.search.logOf(QStringLiteral("IO monitor"))
                                 .contains(QStringLiteral("COM4: ") + DeniedLine::told(device)),
                             5000);
    QVERIFY(!site.ports()->isEnabled());
    QCOMPARE(site.search.fixture.boxes.shown().size(), 1);
}

KELDOX_TEST(TestMonitorPorts)
#include "TestMonitorPorts.moc"
