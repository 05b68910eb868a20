// Which device is COM n: links before listed ports, natural order, and numbers that stay with
// their device.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/PortDirectory.h"
#include "platform/TestHooks.h"

#include <QFile>
#include <QTemporaryDir>

class TestPortDirectory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void listedPortsTakeTheNumbersFromOneUpInNaturalOrder();
    void aNumberWithoutADeviceIsNothing();
    void aLinkWinsOverAListedPort();
    void aLinkedDeviceGetsNoSecondNumber();
    void namesThatAreNoPortLinksAreIgnored();
    void aLinkToADeviceThatIsNotThereStillHasItsNumber();
    void theListingIsTakenOnceUntilItIsTakenAfresh();
    void aNumberStaysWithItsDeviceWhileItIsUnplugged();
    void anAdapterIsKnownAgainInAnotherSocket();
    void anotherAdapterInTheSameSocketGetsAnotherNumber();
    void adaptersThatShareASerialNumberKeepTheirNumbers();
    void aLinkTakesANumberFromAListedPort();
    void aDeviceIsDescribedForPeople();
    void aDeviceIsFoundByItsPath();
    void aDeviceThatIsNotListedTakesAFreeNumber();

private:
    // The device file of a listed port, really there.
    PortDirectory::Device port(const QString &name, const QString &identity = {},
                               const QString &description = {});
    QString locationOf(int number);
    int numberOf(const QString &name);

    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<QTemporaryDir> devices;
    QList<PortDirectory::Device> listed;
    int listings = 0;
};

void TestPortDirectory::init()
{
    fixture = std::make_unique<Fixture>();
    devices = std::make_unique<QTemporaryDir>();
    listed.clear();
    listings = 0;
    TestHooks::listPorts([this] {
        ++listings;
        return listed;
    });
}

void TestPortDirectory::cleanup()
{
    fixture.reset();
    devices.reset();
}

PortDirectory::Device TestPortDirectory::port(const QString &name, const QString &identity,
                                              const QString &description)
{
    QFile device(devices->filePath(name));
    device.open(QIODevice::WriteOnly);
    return {device.fileName(), name, description, identity};
}

QString TestPortDirectory::locationOf(int number)
{
    const auto device = PortDirectory::instance().find(number);
    return device ? device->location : QString();
}

int TestPortDirectory::numberOf(const QString &name)
{
    for (int number = 1; number <= PortDirectory::lastNumber; ++number)
        if (const auto device = PortDirectory::instance().find(number);
            device && device->name == name)
            return number;
    return 0;
}

void TestPortDirectory::listedPortsTakeTheNumbersFromOneUpInNaturalOrder()
{
    for (const char *name : {"ttyUSB10", "ttyUSB2", "ttyS1", "ttyUSB1", "ttyS0"})
        listed.append(port(QString::fromLatin1(name)));
    QCOMPARE(numberOf(QStringLiteral("ttyS0")), 1);
    QCOMPARE(numberOf(QStringLiteral("ttyS1")), 2);
    QCOMPARE(numberOf(QStringLiteral("ttyUSB1")), 3);
    QCOMPARE(numberOf(QStringLiteral("ttyUSB2")), 4);
    QCOMPARE(numberOf(QStringLiteral("ttyUSB10")), 5);
}

void TestPortDirectory::aNumberWithoutADeviceIsNothing()
{
    listed = {port(QStringLiteral("ttyS0"))};
    QVERIFY(!PortDirectory::instance().find(2));
    QVERIFY(!PortDirectory::instance().find(0));
    QVERIFY(!PortDirectory::instance().find(-1));
}

void TestPortDirectory::aLinkWinsOverAListedPort()
{
    listed = {port(QStringLiteral("ttyS0")), port(QStringLiteral("ttyS1"))};
    const auto linked = port(QStringLiteral("unit"));
    fixture->plug(1, linked.location);
    QCOMPARE(locationOf(1), linked.location);
    QCOMPARE(numberOf(QStringLiteral("ttyS0")), 2);
    QCOMPARE(numberOf(QStringLiteral("ttyS1")), 3);
}

void TestPortDirectory::aLinkedDeviceGetsNoSecondNumber()
{
    listed = {port(QStringLiteral("ttyS0")), port(QStringLiteral("ttyS1"))};
    // By way of another link, as the system offers them by the adapter's name.
    const QString byName = devices->filePath(QStringLiteral("by-name"));
    QVERIFY(QFile::link(listed.at(0).location, byName));
    fixture->plug(7, byName);
    QCOMPARE(locationOf(7), byName);
    QCOMPARE(numberOf(QStringLiteral("ttyS0")), 0);
    QCOMPARE(numberOf(QStringLiteral("ttyS1")), 1);
}

void TestPortDirectory::namesThatAreNoPortLinksAreIgnored()
{
    const auto unit = port(QStringLiteral("unit"));
    fixture->plug(3, unit.location);
    const QString folder = PortDirectory::linkFolder() + QLatin1Char('/');
    const QStringList others = {folder + QStringLiteral("com"), folder + QStringLiteral("comX"),
                                folder + QStringLiteral("com0"), folder + QStringLiteral("com-4"),
                                folder + QStringLiteral("port5")};
    for (const QString &other : others)
        QVERIFY(QFile::link(unit.location, other));
    QFile plain(folder + QStringLiteral("com6")); // a file, no link
    QVERIFY(plain.open(QIODevice::WriteOnly));
    PortDirectory::instance().refresh();
    for (int number = 0; number <= 10; ++number)
        QCOMPARE(PortDirectory::instance().find(number).has_value(), number == 3);
    for (const QString &other : others)
        QFile::remove(other);
    plain.remove();
}

void TestPortDirectory::aLinkToADeviceThatIsNotThereStillHasItsNumber()
{
    fixture->plug(4, devices->filePath(QStringLiteral("gone")));
    QCOMPARE(locationOf(4), devices->filePath(QStringLiteral("gone")));
}

void TestPortDirectory::theListingIsTakenOnceUntilItIsTakenAfresh()
{
    listed = {port(QStringLiteral("ttyS0"))};
    QCOMPARE(numberOf(QStringLiteral("ttyS0")), 1);
    QCOMPARE(numberOf(QStringLiteral("none")), 0);
    QCOMPARE(listings, 1);
    listed.append(port(QStringLiteral("ttyS1")));
    QCOMPARE(numberOf(QStringLiteral("ttyS1")), 0);
    PortDirectory::instance().refresh();
    QCOMPARE(numberOf(QStringLiteral("ttyS1")), 2);
    QCOMPARE(listings, 2);
}

void TestPortDirectory::aNumberStaysWithItsDeviceWhileItIsUnplugged()
{
    const auto first = port(QStringLiteral("ttyUSB0"));
    const auto second = port(QStringLiteral("ttyUSB1"));
    const auto third = port(QStringLiteral("ttyACM0"));
    listed = {first, second};
    QCOMPARE(numberOf(QStringLiteral("ttyUSB1")), 2);
    listed = {second, third};
    PortDirectory::instance().refresh();
    QVERIFY(!PortDirectory::instance().find(1));
    QCOMPARE(numberOf(QStringLiteral("ttyUSB1")), 2);
    QCOMPARE(numberOf(QStringLiteral("ttyACM0")), 3);
    listed = {first, second, third};
    PortDirectory::instance().refresh();
    QCOMPARE(numberOf(QStringLiteral("ttyUSB0")), 1);
}

void TestPortDirectory::anAdapterIsKnownAgainInAnotherSocket()
{
    listed = {port(QStringLiteral("ttyUSB0"), QStringLiteral("A")),
              port(QStringLiteral("ttyUSB1"), QStringLiteral("B"))};
    QCOMPARE(numberOf(QStringLiteral("ttyUSB0")), 1);
    listed = {port(QStringLiteral("ttyUSB0"), QStringLiteral("B")),
              port(QStringLiteral("ttyUSB1"), QStringLiteral("A"))};
    PortDirectory::instance().refresh();
    QCOMPARE(numberOf(QStringLiteral("ttyUSB1")), 1);
    QCOMPARE(numberOf(QStringLiteral("ttyUSB0")), 2);
}

void TestPortDirectory::anotherAdapterInTheSameSocketGetsAnotherNumber()
{
    listed = {port(QStringLiteral("ttyUSB0"), QStringLiteral("A"))};
    QCOMPARE(numberOf(QStringLiteral("ttyUSB0")), 1);
    listed = {port(QStringLiteral("ttyUSB0"), QStringLiteral("B"))};
    PortDirectory::instance().refresh();
    QVERIFY(!PortDirectory::instance().find(1));
    QCOMPARE(numberOf(QStringLiteral("ttyUSB0")), 2);
}

void TestPortDirectory::adaptersThatShareASerialNumberKeepTheirNumbers()
{
    const auto first = port(QStringLiteral("ttyUSB0"), QStringLiteral("0001"));
    const auto second = port(QStringLiteral("ttyUSB1"), QStringLiteral("0001"));
    listed = {first, second};
    QCOMPARE(numberOf(QStringLiteral("ttyUSB0")), 1);
    QCOMPARE(numberOf(QStringLiteral("ttyUSB1")), 2);
    listed = {second};
    PortDirectory::instance().refresh();
    QVERIFY(!PortDirectory::instance().find(1));
    QCOMPARE(numberOf(QStringLiteral("ttyUSB1")), 2);
    listed = {second, port(QStringLiteral("ttyS0"), QStringLiteral("0001"))};
    PortDirectory::instance().refresh();
    QCOMPARE(numberOf(QStringLiteral("ttyS0")), 1);
    QCOMPARE(numberOf(QStringLiteral("ttyUSB1")), 2);
}

void TestPortDirectory::aLinkTakesANumberFromAListedPort()
{
    listed = {port(QStringLiteral("ttyS0")), port(QStringLiteral("ttyS1"))};
    QCOMPARE(numberOf(QStringLiteral("ttyS0")), 1);
    const auto linked = port(QStringLiteral("unit"));
    fixture->plug(1, linked.location);
    QCOMPARE(locationOf(1), linked.location);
    QCOMPARE(numberOf(QStringLiteral("ttyS1")), 2);
    QCOMPARE(numberOf(QStringLiteral("ttyS0")), 3);
}

void TestPortDirectory::aDeviceIsDescribedForPeople()
{
    listed = {port(QStringLiteral("ttyS0")),
              port(QStringLiteral("ttyUSB0"), {}, QStringLiteral("USB serial converter"))};
    PortDirectory &directory = PortDirectory::instance();
    QCOMPARE(directory.describe(1), QStringLiteral("ttyS0"));
    QCOMPARE(directory.describe(2), QStringLiteral("ttyUSB0, USB serial converter"));
    QCOMPARE(directory.describe(3), QString());
    fixture->plug(3, devices->filePath(QStringLiteral("ttyUSB9")));
    QCOMPARE(directory.describe(3), QStringLiteral("ttyUSB9, linked as com3"));
}

void TestPortDirectory::aDeviceIsFoundByItsPath()
{
    listed = {port(QStringLiteral("ttyUSB0")), port(QStringLiteral("ttyUSB1"))};
    const QString linked = port(QStringLiteral("ttyS4")).location;
    fixture->plug(9, linked);
    PortDirectory &directory = PortDirectory::instance();
    QCOMPARE(directory.numberOf(listed.at(1).location), 2);
    QCOMPARE(directory.numberOf(linked), 9);
    // By another name of it, as udev makes them.
    const QString other = devices->filePath(QStringLiteral("by-id"));
    QVERIFY(QFile::link(listed.at(1).location, other));
    QCOMPARE(directory.numberOf(other), 2);
}

void TestPortDirectory::aDeviceThatIsNotListedTakesAFreeNumber()
{
    listed = {port(QStringLiteral("ttyUSB0"))};
    const QString terminal = port(QStringLiteral("pts7")).location;
    PortDirectory &directory = PortDirectory::instance();
    QCOMPARE(directory.numberOf(terminal), 2);
    QCOMPARE(directory.find(2)->location, terminal);
    directory.refresh();
    QCOMPARE(directory.numberOf(terminal), 2);
    QVERIFY(directory.isPresent(2));
    // One that is not there has a number too: opening it says that it is gone.
    const QString gone = devices->filePath(QStringLiteral("gone"));
    const int number = directory.numberOf(gone);
    QCOMPARE(number, 3);
    QVERIFY(!directory.isPresent(number));
    QCOMPARE(directory.find(number)->location, gone);
}

KELDOX_TEST(TestPortDirectory)
#include "TestPortDirectory.moc"
