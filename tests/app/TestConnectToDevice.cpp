// Connecting one channel: the order in which windows, rows, unit and log see it, and units that
// share a line.
#include "app/AppState.h"
#include "app/ConnectToDevice.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

class TestConnectToDevice : public QObject
{
    Q_OBJECT

private slots:
    void channelZeroOnlyLogs();
    void aConnectionRunsInItsOrder();
    void theWholeLogOfAConnection();
    void theUnitBecomesCurrentEverywhere();
    void theCaptionFollowsTheSelectedOption_data();
    void theCaptionFollowsTheSelectedOption();
    void otherChannelsAreDisabledBeforeTheUnitIsAsked();
    void theWindowsHearTheUnitChange();
    void theOtherUnitOnTheLineLetsGoOfThePort();
    void unitsOnOtherPortsKeepTheirs();
    void goingBackAndForthBetweenTwoAddresses();
};

static std::int16_t connectChannel(std::int16_t channel)
{
    std::shared_ptr<clsKeldoX> device;
    return ConnectToDevice(device, channel);
}

void TestConnectToDevice::channelZeroOnlyLogs()
{
    SearchBench bench;
    bench.channels->selected = 2;
    std::shared_ptr<clsKeldoX> device;
    QCOMPARE(ConnectToDevice(device, 0), std::int16_t(0));
    QCOMPARE(bench.log->lines(), QStringList{QStringLiteral("Channel0 |connecting... ")});
    QCOMPARE(*bench.calls, QStringList());
    QVERIFY(!device);
    QVERIFY(!app().currentDevice);
}

void TestConnectToDevice::aConnectionRunsInItsOrder()
{
    SearchBench bench;
    bench.unit(5);
    bench.bind(3, 5);
    bench.channels->selected = 3;
    QCOMPARE(connectChannel(3), std::int16_t(0));

    QStringList expected{QStringLiteral("main.caption Active Channel 3"),
                         QStringLiteral("main.panel1 CONNECTING..."),
                         QStringLiteral("channels.panel1 <     >")};
    for (const int other : {1, 2, 4, 5, 6, 7, 8})
        expected.append(QStringLiteral("row%1.DisableControls").arg(other));
    expected << QStringLiteral("main.setDevice") << QStringLiteral("channels.setDevice")
             << QStringLiteral("main.enablePresets") << QStringLiteral("channels.refresh")
             << QStringLiteral("main.panel1 CONNECTED ON COM5")
             << QStringLiteral("channels.panel1 <CONNECTED ON COM5>");
    QCOMPARE(*bench.calls, expected);
}

void TestConnectToDevice::theWholeLogOfAConnection()
{
    SearchBench bench;
    bench.unit(5);
    bench.bind(3, 5);
    connectChannel(3);
    const QStringList log = bench.log->lines();
    QCOMPARE(log.mid(0, 5), (QStringList{QStringLiteral("Channel3 |connecting... "),
                                         QStringLiteral("Keldo-X | initializing "),
                                         QStringLiteral("Keldo-X | opened serial port "),
                                         QStringLiteral("clsKeldoX| sending *ID? to com port 5"),
                                         QStringLiteral("clsKeldoX| received KELDO-X")}));
    QCOMPARE(log.last(), QStringLiteral("Channel3 |connected"));
    QCOMPARE(log.filter(QStringLiteral("Channel3 ")).size(), 2);
}

void TestConnectToDevice::theUnitBecomesCurrentEverywhere()
{
    SearchBench bench;
    bench.unit(5);
    const auto bound = bench.bind(3, 5);
    auto device = std::make_shared<clsKeldoX>(); // whatever the caller passes is replaced
    QCOMPARE(ConnectToDevice(device, 3), std::int16_t(0));
    QCOMPARE(device.get(), bound.get());
    QCOMPARE(app().currentDevice.get(), bound.get());
    QCOMPARE(bench.mainWindow->mDevice.get(), bound.get());
    QCOMPARE(bench.channels->mDevice.get(), bound.get());
    QVERIFY(bound->isInitialized());
    QVERIFY(bound->PortIsOpen());
}

void TestConnectToDevice::theCaptionFollowsTheSelectedOption_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("caption");
    QTest::newRow("none") << 0 << "Active Channel 0";
    QTest::newRow("another one") << 2 << "Active Channel 2";
    QTest::newRow("the channel's own") << 8 << "Active Channel 8";
}

void TestConnectToDevice::theCaptionFollowsTheSelectedOption()
{
    QFETCH(int, selected);
    QFETCH(QString, caption);
    SearchBench bench;
    bench.unit(5);
    bench.bind(8, 5);
    bench.channels->selected = selected;
    connectChannel(8);
    QCOMPARE(bench.mainWindow->caption, caption);
}

void TestConnectToDevice::otherChannelsAreDisabledBeforeTheUnitIsAsked()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    bench.bind(1, 1);
    bench.bind(2, 2);
    connectChannel(1);
    int asked = -1;
    bench.rows[1]->onDisable = [&](FakeChannelRow &) { asked = int(bench.sentTo(2).size()); };
    bench.calls->clear();
    connectChannel(2);
    QCOMPARE(asked, 0);
    QVERIFY(!bench.sentTo(2).isEmpty());
    QVERIFY(!bench.calls->contains(QStringLiteral("row2.DisableControls")));
}

void TestConnectToDevice::theWindowsHearTheUnitChange()
{
    SearchBench bench;
    bench.unit(5);
    const auto device = bench.bind(1, 5);
    bool pointedAt = false;
    int changes = 0;
    connect(device.get(), &clsKeldoX::DUTChange, this, [&] {
        pointedAt = bench.mainWindow->mDevice == device && bench.channels->mDevice == device &&
                    app().currentDevice == device;
        ++changes;
    });
    connectChannel(1);
    QVERIFY(pointedAt);
    QCOMPARE(changes, 1);
}

void TestConnectToDevice::theOtherUnitOnTheLineLetsGoOfThePort()
{
    SearchBench bench;
    bench.unit(4);
    const auto first = bench.bind(1, 4);
    const auto second = bench.bind(2, 4);
    connectChannel(1);
    QVERIFY(first->PortIsOpen());
    connectChannel(2);
    QVERIFY(!first->PortIsOpen());
    QVERIFY(second->PortIsOpen());
}

void TestConnectToDevice::unitsOnOtherPortsKeepTheirs()
{
    SearchBench bench;
    bench.unit(4);
    bench.unit(5);
    const auto first = bench.bind(1, 4);
    const auto second = bench.bind(2, 5);
    connectChannel(1);
    connectChannel(2);
    QVERIFY(first->PortIsOpen());
    QVERIFY(second->PortIsOpen());
}

void TestConnectToDevice::goingBackAndForthBetweenTwoAddresses()
{
    SearchBench bench;
    bench.unit(4, addressedUnit(2, 100));
    bench.unit(4, addressedUnit(5, 200));
    bench.bind(1, 4)->setAddr(2);
    bench.bind(2, 4)->setAddr(5);
    QStringList frequencies;
    for (const std::int16_t channel : {1, 2, 1, 2}) {
        connectChannel(channel);
        frequencies.append(QString::number(app().currentDevice->currentFreq()));
    }
    QCOMPARE(frequencies, (QStringList{QStringLiteral("100"), QStringLiteral("200"),
                                       QStringLiteral("100"), QStringLiteral("200")}));
    QCOMPARE(bench.sentTo(4).filter(QStringLiteral("LISTEN")),
             (QStringList{QStringLiteral(">UNLISTEN"), QStringLiteral(">LISTEN02"),
                          QStringLiteral(">UNLISTEN"), QStringLiteral(">LISTEN05"),
                          QStringLiteral(">UNLISTEN"), QStringLiteral(">LISTEN02"),
                          QStringLiteral(">UNLISTEN"), QStringLiteral(">LISTEN05")}));
}

KELDOX_TEST(TestConnectToDevice)
#include "TestConnectToDevice.moc"
