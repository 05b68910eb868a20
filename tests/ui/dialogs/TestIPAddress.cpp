// The check of IPv4 addresses.
#include "support/TestMain.h"

#include "ui/dialogs/IPAddress.h"

class TestIPAddress : public QObject
{
    Q_OBJECT

private slots:
    void addresses_data();
    void addresses();
};

void TestIPAddress::addresses_data()
{
    QTest::addColumn<bool>("valid");
    QTest::newRow("123.123.123.123") << true;
    QTest::newRow("") << false;
    QTest::newRow(" ") << false;
    QTest::newRow("123.123.123") << false;
    QTest::newRow("123.123.123.") << false;
    QTest::newRow(".123.123.123") << false;
    QTest::newRow("123..123.123") << false;
    QTest::newRow("123.123.123.123.123") << false;
    QTest::newRow("123.456.123.123") << false;
    QTest::newRow("123.-123.123.123") << false;
    QTest::newRow("123.123.123.0000") << false;
    QTest::newRow("A00.0.00.000") << false;
    QTest::newRow("000.0R.0.0") << false;
    QTest::newRow("$H023.42.42.42") << false;
    QTest::newRow("&H2.00.00.000") << true; // a hexadecimal part is a number too
    QTest::newRow("&H0.0.00.000") << true;
    QTest::newRow("0.0.0.0") << true;
    QTest::newRow("255.255.255.255") << true;
    QTest::newRow("256.0.0.1") << false;
    QTest::newRow("1.2.3.256") << false;
    QTest::newRow("-1.0.0.1") << false;
    QTest::newRow("-0.0.0.1") << true;
    QTest::newRow("1e2.0.0.1") << true; // 100
    QTest::newRow("9e9.0.0.1") << false;
    QTest::newRow("1. 2.3.4") << true;
    QTest::newRow("1. .3.4") << false;
}

void TestIPAddress::addresses()
{
    QTEST(IsValidIPAddress(QString::fromLatin1(QTest::currentDataTag())), "valid");
}

KELDOX_TEST(TestIPAddress)
#include "TestIPAddress.moc"
