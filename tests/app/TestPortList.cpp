// The list of ports that can be opened, and the closing of all ports.
#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QComboBox>
#include <QSerialPort>

class TestPortList : public QObject
{
    Q_OBJECT

private slots:
    void theHighestNumberedPortIsDropped();
    void entriesTellTheirDeviceAsToolTip();
    void oneSinglePortLeavesAnEmptyListThatIsEnabled();
    void withoutAnyPortTheListStaysDisabledAfterAReport();
    void aBusyPortIsListedAllTheSame();
    void everyPortIsClosedAgain();
    void theListIsDisabledWhileItIsFilled();
    void nothingIsSentToThePorts();
    void fillingAgainListsEachPortOnce();
    void closingAllPortsClosesTheMonitorsFirstAndSkipsEmptySlots();
    void closingAllPortsReportsAFailureAndGoesOn();
};

static QStringList entries(const QComboBox &combo)
{
    QStringList all;
    for (int i = 0; i < combo.count(); ++i)
        all.append(combo.itemText(i));
    return all;
}

void TestPortList::theHighestNumberedPortIsDropped()
{
    SearchBench bench;
    for (const int port : {1, 3, 4})
        bench.line(port);
    QComboBox combo;
    PopulateComboBox(combo);
    QCOMPARE(entries(combo), (QStringList{QStringLiteral(" 1"), QStringLiteral(" 3")}));
    QCOMPARE(combo.currentIndex(), 0);
    QCOMPARE(combo.currentText(), QStringLiteral(" 1"));
    QVERIFY(combo.isEnabled());
    QCOMPARE(bench.log->lines(),
             (QStringList{QStringLiteral("SearchPorts|COM1 status = port_open"),
                          QStringLiteral("SearchPorts|COM3 status = port_open"),
                          QStringLiteral("SearchPorts|COM4 status = port_open")}));
}

void TestPortList::entriesTellTheirDeviceAsToolTip()
{
    SearchBench bench;
    for (const int port : {1, 3, 200})
        bench.line(port);
    QComboBox combo;
    PopulateComboBox(combo);
    QCOMPARE(combo.count(), 2);
    const QString name = QFileInfo(QString::fromStdString(bench.line(3).device())).fileName();
    QCOMPARE(combo.itemData(1, Qt::ToolTipRole).toString(),
             name + QStringLiteral(", linked as com3"));
    QVERIFY(
        combo.itemData(0, Qt::ToolTipRole).toString().endsWith(QLatin1String("linked as com1")));
}

void TestPortList::oneSinglePortLeavesAnEmptyListThatIsEnabled()
{
    SearchBench bench;
    bench.line(7);
    QComboBox combo;
    PopulateComboBox(combo);
    QCOMPARE(entries(combo), QStringList());
    QVERIFY(combo.isEnabled());
}

void TestPortList::withoutAnyPortTheListStaysDisabledAfterAReport()
{
    SearchBench bench;
    QComboBox combo;
    bench.fixture.boxes.expect(QStringLiteral("Error 5 ('Invalid procedure call or argument')\r\n"
                                              "Invalid procedure call or argument\r\n"
                                              " from KELDO-X Control Program\r\n"
                                              " in modSearchPorts.PopulateComboBox\r\n"),
                               MessageBox::Exclamation);
    PopulateComboBox(combo);
    QCOMPARE(entries(combo), QStringList());
    QVERIFY(!combo.isEnabled());
}

void TestPortList::aBusyPortIsListedAllTheSame()
{
    SearchBench bench;
    for (const int port : {1, 3})
        bench.line(port);
    QSerialPort other(QString::fromStdString(bench.line(1).device()));
    QVERIFY(other.open(QIODevice::ReadWrite));
    QComboBox combo;
    PopulateComboBox(combo);
    QCOMPARE(entries(combo), QStringList{QStringLiteral(" 1")});
}

void TestPortList::everyPortIsClosedAgain()
{
    SearchBench bench;
    for (const int port : {1, 255})
        bench.line(port);
    QComboBox combo;
    PopulateComboBox(combo);
    QCOMPARE(entries(combo), QStringList{QStringLiteral(" 1")});
    for (const int port : {1, 255}) {
        QSerialPort other(QString::fromStdString(bench.line(port).device()));
        QVERIFY(other.open(QIODevice::ReadWrite));
    }
}

void TestPortList::theListIsDisabledWhileItIsFilled()
{
    // The log is told of every opening: a good place to look at the list in the middle.
    class WatchingLog : public FakeLog
    {
    public:
        void LogEvent(const QString &, const QString &, bool, bool) override
        {
            enabled.append(combo->isEnabled());
        }
        const QComboBox *combo = nullptr;
        QList<bool> enabled;
    };
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    QComboBox combo;
    const auto log = std::make_shared<WatchingLog>();
    log->combo = &combo;
    installEventLog(log);
    PopulateComboBox(combo);
    QCOMPARE(log->enabled, (QList<bool>{false, false}));
    QVERIFY(combo.isEnabled());
}

void TestPortList::nothingIsSentToThePorts()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    QComboBox combo;
    PopulateComboBox(combo);
    QCOMPARE(bench.line(1).bytesReceived(), std::size_t(0));
    QCOMPARE(bench.line(2).bytesReceived(), std::size_t(0));
    QVERIFY(!app().search); // the list has a seeker of its own
}

void TestPortList::fillingAgainListsEachPortOnce()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    QComboBox combo;
    PopulateComboBox(combo);
    PopulateComboBox(combo);
    QCOMPARE(entries(combo), QStringList{QStringLiteral(" 1")});
}

void TestPortList::closingAllPortsClosesTheMonitorsFirstAndSkipsEmptySlots()
{
    SearchBench bench;
    bench.line(1);
    bench.line(8);
    const auto first = bench.bind(1, 1);
    const auto last = bench.bind(8, 8);
    QVERIFY(first->commPort()->InitializePort());
    QVERIFY(last->commPort()->InitializePort());
    closeAllComPorts();
    QCOMPARE(*bench.calls, QStringList{QStringLiteral("monitor.closeComPort")});
    QVERIFY(!first->commPort()->IsOpen());
    QVERIFY(!last->commPort()->IsOpen());
}

void TestPortList::closingAllPortsReportsAFailureAndGoesOn()
{
    class FailingMonitor : public FakeIOMonitor
    {
    public:
        void closeComPort() override { throw RunTimeError(91); }
    };
    Fixture fixture;
    app().makers.ioMonitor = [] { return std::make_shared<FailingMonitor>(); };
    const auto device = std::make_shared<clsKeldoX>();
    sim::SimulatedLine line;
    fixture.plug(1, line.device());
    device->setConnection(clsKeldoX::SerialPort);
    device->commPort()->setPortNumber(1);
    QVERIFY(device->commPort()->InitializePort());
    app().devices[1] = device;
    fixture.boxes.expectStart(QStringLiteral("Error 91 ('Object variable not set')\r\n"),
                              MessageBox::Exclamation);
    closeAllComPorts();
    QVERIFY(fixture.boxes.texts().first().endsWith(
        QLatin1String(" in modSearchPorts.closeAllComPorts\r\n")));
    QVERIFY(!device->commPort()->IsOpen());
}

KELDOX_TEST(TestPortList)
#include "TestPortList.moc"
