// Ports that a program serves: their numbers beside other ports, and a program that is not there or
// talks nonsense.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/PortDirectory.h"
#include "platform/PortProcess.h"
#include "platform/ServedPorts.h"
#include "platform/TestHooks.h"

class TestServedPorts : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theLinesOfTheSimulatorTakeNumbersFromThreeUp();
    void linkedAndListedPortsKeepTheirNumbers();
    void aNumberStaysWithItsLine();
    void aLinkPushesALineAway();
    void theyGoWithTheirOwner();
    void aProgramThatIsNotThereIsNamed();
    void aProgramWithoutAListIsNamed_data();
    void aProgramWithoutAListIsNamed();

private:
    static QString simulator()
    {
        return qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x-sim");
    }
    static QString line() { return QStringLiteral("simulated line"); }
    static QStringList described(); // "3 simulated line 1, ..." of all numbers

    std::unique_ptr<Fixture> m_fixture;
    QTemporaryDir m_folder;
};

void TestServedPorts::init()
{
    m_fixture = std::make_unique<Fixture>();
}

void TestServedPorts::cleanup()
{
    m_fixture.reset();
}

QStringList TestServedPorts::described()
{
    QStringList all;
    PortDirectory &directory = PortDirectory::instance();
    directory.refresh();
    for (int number = 1; number <= PortDirectory::lastNumber; ++number)
        if (directory.isPresent(number) && directory.isUsable(number))
            all.append(QStringLiteral("%1 %2").arg(number).arg(directory.describe(number)));
    return all;
}

void TestServedPorts::theLinesOfTheSimulatorTakeNumbersFromThreeUp()
{
    ServedPorts ports;
    QCOMPARE(ports.add(simulator(), line()), QString());
    QCOMPARE(
        described(),
        (QStringList{QStringLiteral("3 simulated line 1, KELDO-X firmware 3.38"),
                     QStringLiteral("4 simulated line 2, KELDO-X firmware 3.38"),
                     QStringLiteral("5 simulated line 3, TOVIN-R firmware 3.38 addresses 2 5")}));
}

void TestServedPorts::linkedAndListedPortsKeepTheirNumbers()
{
    QList<PortDirectory::Device> listed;
    for (int i = 0; i < 4; ++i)
        listed.append(
            {QStringLiteral("/dev/null"), QStringLiteral("tty%1").arg(i), {}, QString::number(i)});
    TestHooks::listPorts([listed] { return listed; });
    m_fixture->plug(6, QStringLiteral("/dev/zero"));
    ServedPorts ports;
    QCOMPARE(ports.add(simulator(), line()), QString());
    const QStringList all = described();
    QCOMPARE(all.size(), 8);
    QVERIFY(all.at(3).startsWith(QStringLiteral("4 tty3")));
    QVERIFY(all.at(4).startsWith(QStringLiteral("5 simulated line 1")));
    QVERIFY(all.at(5).startsWith(QStringLiteral("6 zero")));
    QVERIFY(all.at(7).startsWith(QStringLiteral("8 simulated line 3")));
}

void TestServedPorts::aNumberStaysWithItsLine()
{
    QList<PortDirectory::Device> listed;
    TestHooks::listPorts([&listed] { return listed; });
    ServedPorts ports;
    QCOMPARE(ports.add(simulator(), line()), QString());
    for (int i = 0; i < 4; ++i)
        listed.append(
            {QStringLiteral("/dev/null"), QStringLiteral("tty%1").arg(i), {}, QString::number(i)});
    const QStringList all = described();
    QVERIFY(all.at(1).startsWith(QStringLiteral("2 tty1")));
    QVERIFY(all.at(2).startsWith(QStringLiteral("3 simulated line 1")));
    QVERIFY(all.at(4).startsWith(QStringLiteral("5 simulated line 3")));
    QVERIFY(all.at(5).startsWith(QStringLiteral("6 tty2")));
}

void TestServedPorts::aLinkPushesALineAway()
{
    ServedPorts ports;
    QCOMPARE(ports.add(simulator(), line()), QString());
    m_fixture->plug(4, QStringLiteral("/dev/zero"));
    const QStringList all = described();
    QVERIFY(all.at(1).startsWith(QStringLiteral("4 zero")));
    QVERIFY(all.at(3).startsWith(QStringLiteral("6 simulated line 2")));
}

void TestServedPorts::theyGoWithTheirOwner()
{
    {
        ServedPorts ports;
        QCOMPARE(ports.add(simulator(), line()), QString());
        QCOMPARE(described().size(), 3);
    }
    QCOMPARE(described(), QStringList());
}

void TestServedPorts::aProgramThatIsNotThereIsNamed()
{
    ServedPorts ports;
    const QString failure = ports.add(QStringLiteral("keldo-x-nowhere"), line());
    QVERIFY2(failure.startsWith(QStringLiteral(
                 "The program keldo-x-nowhere is neither beside this one nor in the PATH.")),
             qPrintable(failure));
    QVERIFY(failure.endsWith(QStringLiteral("start without simulated lines.")));
    QCOMPARE(described(), QStringList());
}

void TestServedPorts::aProgramWithoutAListIsNamed_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("says nothing") << QByteArray("#!/bin/sh\n");
    QTest::newRow("talks nonsense") << QByteArray("#!/bin/sh\necho hello\necho 12\necho -- 3 x\n");
    QTest::newRow("fails") << QByteArray("#!/bin/sh\necho '1  KELDO-X'\nexit 1\n");
    QTest::newRow("is killed") << QByteArray("#!/bin/sh\necho '1  KELDO-X'\nkill -9 $$\n");
    QTest::newRow("is no program") << QByteArray("#!/no/such/interpreter\n");
}

void TestServedPorts::aProgramWithoutAListIsNamed()
{
    QFETCH(const QByteArray, script);
    QFile file(m_folder.filePath(QStringLiteral("server")));
    file.remove();
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(script);
    file.setPermissions(file.permissions() | QFile::ExeUser);
    file.close();
    ServedPorts ports;
    QCOMPARE(
        ports.add(file.fileName(), line()),
        QStringLiteral("The program %1 does not tell its simulated lines.").arg(file.fileName()));
    QCOMPARE(described(), QStringList());
}

KELDOX_TEST(TestServedPorts)
#include "TestServedPorts.moc"
