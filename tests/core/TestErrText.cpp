// The table of error texts, number by number, and the texts of the numbers that are not in it.
#include "support/TestMain.h"

#include "core/modErrorHandling.h"
#include "platform/RunTimeError.h"

#include <QSet>

namespace {

struct Entry
{
    int number;
    const char *text;
};

constexpr Entry table[] = {
    {2001, "unknown"},
    {3200, "user interrupted the program"},
    {3001, "cannot write to the GPIB"},
    {3002, "cannot write to the device"},
    {3003, "cannot write to the device"},
    {3004, "cannot write to the device"},
    {3005, "cannot read from the device"},
    {3006, "cannot read from the device"},
    {3007, "cannot read from the device"},
    {3300, "cannot read from device"},
    {3301, "instrument or DUT was not found"},
    {3020, "cannot write to the network analyzer"},
    {3022, "cannot write to the network analyzer"},
    {3023, "cannot write to the network analyzer"},
    {3021, "cannot read from the network analyzer"},
    {3050, "cannot write to serial port"},
    {3051, "cannot write to serial port"},
    {3150, "found blank or out of range data"},
    {3100, "trouble while trying to access the disk"},
    {3101, "no filename chosen"},
    {3170, "possible math error or bad numeric data"},
    {8000, "Operation not valid while the port is opened"},
    {8001, "Timeout value must be greater than zero"},
    {8002, "Invalid Port Number"},
    {8003, "internal error - Property available only at run time"},
    {8004, "internal error - Property is read only at runtime"},
    {8005, "Port already open"},
    {8006, "The device identifier is invalid or unsupported"},
    {8007, "The Device's baud rate is unsupported"},
    {8008, "The specified byte size is invalid"},
    {8009, "The default parameters are in error"},
    {8010, "The hardware is not available (locked by another device)"},
    {8011, "The function cannot allocate the queues"},
    {8012, "The device is not open"},
    {8013, "The device is already open"},
    {8014, "Could not enable comm notification"},
    {8015, "Could not set comm state"},
    {8016, "Could not set comm event mask"},
    {8017, "Unknown port error"},
    {8018, "Operation valid only when the port is open"},
    {8019, "The device is busy"},
    {8020, "Error reading comm device"},
    {8021, "Internal error retrieving device control block for the port"},
    {380, "Invalid property value"},
    {383, "internal error - Property is read-only"},
    {394, "internal error - Property is read-only"},
};

} // namespace

class TestErrText : public QObject
{
    Q_OBJECT

private slots:
    void everyListedNumberHasItsText_data();
    void everyListedNumberHasItsText();
    void everyOtherNumberHasTheLibrarysTextInSingleQuotes();
    void aNumberTheLibraryKnowsHasTheLibrarysOwnText();
    void aNumberOutsideSixteenBitsOverflows_data();
    void aNumberOutsideSixteenBitsOverflows();
};

void TestErrText::everyListedNumberHasItsText_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");
    for (const Entry &entry : table)
        QTest::addRow("%d", entry.number) << entry.number << QString::fromLatin1(entry.text);
}

void TestErrText::everyListedNumberHasItsText()
{
    QFETCH(const int, number);
    QFETCH(const QString, text);
    QCOMPARE(ErrText(number), text);
}

void TestErrText::everyOtherNumberHasTheLibrarysTextInSingleQuotes()
{
    QSet<int> listed;
    for (const Entry &entry : table)
        listed.insert(entry.number);
    for (int number = -32768; number <= 32767; ++number)
        if (!listed.contains(number))
            QCOMPARE(ErrText(number),
                     QStringLiteral("'") + runTimeErrorText(number) + QStringLiteral("'"));
}

void TestErrText::aNumberTheLibraryKnowsHasTheLibrarysOwnText()
{
    QCOMPARE(ErrText(6), QStringLiteral("'Overflow'"));
    QCOMPARE(ErrText(9), QStringLiteral("'Subscript out of range'"));
    QCOMPARE(ErrText(13), QStringLiteral("'Type mismatch'"));
    QCOMPARE(ErrText(12345), QStringLiteral("'Application-defined or object-defined error'"));
}

void TestErrText::aNumberOutsideSixteenBitsOverflows_data()
{
    QTest::addColumn<int>("number");
    QTest::addRow("one above") << 32768;
    QTest::addRow("one below") << -32769;
    QTest::addRow("an object's own number") << static_cast<int>(0x80040005);
}

void TestErrText::aNumberOutsideSixteenBitsOverflows()
{
    QFETCH(const int, number);
    try {
        ErrText(number);
        QFAIL("the look-up took the number");
    } catch (const RunTimeError &error) {
        QCOMPARE(error.number(), 6);
    }
}

KELDOX_TEST(TestErrText)
#include "TestErrText.moc"
