// Numbers to text and back, as tables.
#include "support/TestMain.h"

#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

#include <cmath>
#include <limits>

class TestTextNumbers : public QObject
{
    Q_OBJECT

private slots:
    void init() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void cleanup() { QLocale::setDefault(QLocale::c()); }
    void numberIsWrittenAsText_data();
    void numberIsWrittenAsText();
    void aBlankStandsBeforeANumberThatIsNotNegative_data();
    void aBlankStandsBeforeANumberThatIsNotNegative();
    void theLeadingNumberIsRead_data();
    void theLeadingNumberIsRead();
    void aTextIsANumberOrNot_data();
    void aTextIsANumberOrNot();
    void aFrequencyMayEndInAUnitWord_data();
    void aFrequencyMayEndInAUnitWord();
    void halvesRoundToEven_data();
    void halvesRoundToEven();
    void wholeNumbersOverflowOutsideTheirBits_data();
    void wholeNumbersOverflowOutsideTheirBits();
};

void TestTextNumbers::numberIsWrittenAsText_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    const auto row = [](double number, const char *text) {
        QTest::addRow("%s", text) << number << QString::fromLatin1(text);
    };
    row(0, "0");
    row(-0.0, "0");
    row(0.5, "0.5");
    row(-0.5, "-0.5");
    row(5, "5");
    row(-3, "-3");
    row(145.5, "145.5");
    row(146.525, "146.525");
    row(0.1 * 3, "0.3");
    row(1.0 / 3, "0.333333333333333");
    row(2.0 / 3 * 100, "66.6666666666667");
    row(1234567.5, "1234567.5");
    row(123456789012345.0, "123456789012345");
    row(999999999999999.0, "999999999999999");
    row(1e15, "1E+15");
    row(1e20, "1E+20");
    row(1e-5, "1E-05");
    row(0.0001, "0.0001");
    row(-1.5e-7, "-1.5E-07");
    row(2147483647, "2147483647");
    row(-2147483648.0, "-2147483648");
}

void TestTextNumbers::numberIsWrittenAsText()
{
    QFETCH(const double, number);
    QFETCH(const QString, text);
    QCOMPARE(numberToText(number), text);
}

void TestTextNumbers::aBlankStandsBeforeANumberThatIsNotNegative_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    QTest::addRow("one") << 1.0 << QStringLiteral(" 1");
    QTest::addRow("eight") << 8.0 << QStringLiteral(" 8");
    QTest::addRow("zero") << 0.0 << QStringLiteral(" 0");
    QTest::addRow("negative zero") << -0.0 << QStringLiteral(" 0");
    QTest::addRow("half") << 0.5 << QStringLiteral(" 0.5");
    QTest::addRow("negative") << -3.0 << QStringLiteral("-3");
    QTest::addRow("frequency") << 145.5 << QStringLiteral(" 145.5");
    QTest::addRow("step") << 1000.0 << QStringLiteral(" 1000");
}

void TestTextNumbers::aBlankStandsBeforeANumberThatIsNotNegative()
{
    QFETCH(const double, number);
    QFETCH(const QString, text);
    QCOMPARE(numberToTextWithBlank(number), text);
}

void TestTextNumbers::theLeadingNumberIsRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");
    const auto row = [](const char *text, double number) {
        QTest::addRow("<%s>", text) << QString::fromLatin1(text) << number;
    };
    row("", 0);
    row("   ", 0);
    row("MHz", 0);
    row("12.5", 12.5);
    row("  12.5", 12.5);
    row("12.5 MHz", 12.5);
    row("12.5dB", 12.5);
    row("1 2 3", 123);
    row("-3", -3);
    row("- 3", -3);
    row("+7", 7);
    row(".5", 0.5);
    row("5.", 5);
    row("-.5x", -0.5);
    row(".", 0);
    row("-", 0);
    row("1.2.3", 1.2);
    row("1,5", 1);
    row("1.000,5", 1);
    row("1E3", 1000);
    row("1e+3", 1000);
    row("1.5e-3 V", 0.0015);
    row("2E", 2);
    row("2Ex", 2);
    row("1D2", 100);
    row("1E400", 0);
    row("&H10", 16);
    row("&hff", 255);
    row("&HFFg", 255);
    row("&H", 0);
    row("&", 0);
    row("3\t4", 34);
    row("12\r\n", 12);
    row("3-4", 3);
}

void TestTextNumbers::theLeadingNumberIsRead()
{
    QFETCH(const QString, text);
    QFETCH(const double, number);
    QCOMPARE(leadingNumber(text), number);
}

void TestTextNumbers::aTextIsANumberOrNot_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("is");
    QTest::addColumn<double>("number");
    const auto row = [](const char *text, bool is, double number = 0) {
        QTest::addRow("<%s>", text) << QString::fromLatin1(text) << is << number;
    };
    row("", false);
    row(" ", false);
    row("abc", false);
    row("12", true, 12);
    row(" 12.5 ", true, 12.5);
    row("-12.5", true, -12.5);
    row("+3", true, 3);
    row(".5", true, 0.5);
    row("5.", true, 5);
    row("1e3", true, 1000);
    row("1E-2", true, 0.01);
    row("1e", false);
    row("&H1F", true, 31);
    row("&h1f", true, 31);
    row("&HG", false);
    row("&H", false);
    row("12 MHz", false);
    row("12MHz", false);
    row("1 2", false);
    row("1,5", false);
    row("1.2.3", false);
    row("--1", false);
    row("1E400", false);
    row("nan", false);
    row("inf", false);
}

void TestTextNumbers::aTextIsANumberOrNot()
{
    QFETCH(const QString, text);
    QFETCH(const bool, is);
    QFETCH(const double, number);
    QCOMPARE(isNumeric(text), is);
    if (is) {
        QCOMPARE(numericValue(text), number);
        return;
    }
    int raised = 0;
    try {
        numericValue(text);
    } catch (const RunTimeError &error) {
        raised = error.number();
    }
    QCOMPARE(raised, 13);
}

void TestTextNumbers::aFrequencyMayEndInAUnitWord_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("is");
    QTest::addColumn<double>("number");
    QTest::addRow("number") << QStringLiteral("145.5") << true << 145.5;
    QTest::addRow("as shown") << QStringLiteral("145.5 MHz") << true << 145.5;
    QTest::addRow("blanks") << QStringLiteral("  145.5   MHz ") << true << 145.5;
    QTest::addRow("no blank") << QStringLiteral("145.5MHz") << true << 145.5;
    QTest::addRow("any case") << QStringLiteral("145.5 mhz") << true << 145.5;
    QTest::addRow("kHz") << QStringLiteral("146500 kHz") << true << 146.5;
    QTest::addRow("few kHz") << QStringLiteral("146.5 KHZ") << true << 0.1465;
    QTest::addRow("Hz") << QStringLiteral("146500000Hz") << true << 146.5;
    QTest::addRow("GHz") << QStringLiteral("0.1465 gHz") << true << 146.5;
    QTest::addRow("exponent") << QStringLiteral("1.465E5 kHz") << true << 146.5;
    QTest::addRow("another word") << QStringLiteral("146.5 apples") << false << 0.0;
    QTest::addRow("dB") << QStringLiteral("146.5 dB") << false << 0.0;
    QTest::addRow("prefix alone") << QStringLiteral("146500 k") << false << 0.0;
    QTest::addRow("decimal comma") << QStringLiteral("146,5") << false << 0.0;
    QTest::addRow("decimal comma, unit") << QStringLiteral("146,5 MHz") << false << 0.0;
    QTest::addRow("two words") << QStringLiteral("145.5 MHz MHz") << false << 0.0;
    QTest::addRow("word first") << QStringLiteral("MHz 145.5") << false << 0.0;
    QTest::addRow("word alone") << QStringLiteral("MHz") << false << 0.0;
    QTest::addRow("word alone after a blank") << QStringLiteral(" MHz") << false << 0.0;
    QTest::addRow("no number") << QStringLiteral("abc MHz") << false << 0.0;
    QTest::addRow("empty") << QString() << false << 0.0;
}

void TestTextNumbers::aFrequencyMayEndInAUnitWord()
{
    QFETCH(const QString, text);
    QFETCH(const bool, is);
    QFETCH(const double, number);
    const auto value = frequencyInMHz(text);
    QCOMPARE(value.has_value(), is);
    if (is)
        QCOMPARE(*value, number);
}

void TestTextNumbers::halvesRoundToEven_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<double>("rounded");
    const auto row = [](double number, double rounded) {
        QTest::addRow("%.17g", number) << number << rounded;
    };
    row(0.5, 0);
    row(1.5, 2);
    row(2.5, 2);
    row(3.5, 4);
    row(-0.5, 0);
    row(-1.5, -2);
    row(-2.5, -2);
    row(-3.5, -4);
    row(2.4999999999999996, 2);
    row(2.5000000000000004, 3);
    row(-2.5000000000000004, -3);
    row(0.49999999999999994, 0);
    row(7, 7);
    row(1e17, 1e17);
}

void TestTextNumbers::halvesRoundToEven()
{
    QFETCH(const double, number);
    QFETCH(const double, rounded);
    QVERIFY2(roundHalfEven(number) == rounded, qPrintable(QString::number(roundHalfEven(number))));
}

void TestTextNumbers::wholeNumbersOverflowOutsideTheirBits_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<bool>("fits16");
    QTest::addColumn<bool>("fits32");
    const auto row = [](double number, bool fits16, bool fits32) {
        QTest::addRow("%.17g", number) << number << fits16 << fits32;
    };
    row(0, true, true);
    row(32767, true, true);
    row(32767.4, true, true);
    row(32767.5, false, true); // rounds to 32768
    row(-32768, true, true);
    row(-32768.5, true, true); // rounds to the even -32768
    row(-32768.6, false, true);
    row(32768, false, true);
    row(2147483647, false, true);
    row(2147483647.5, false, false);
    row(2147483648.0, false, false);
    row(-2147483648.0, false, true);
    row(-2147483648.5, false, true);
    row(-2147483649.0, false, false);
    row(1e300, false, false);
    row(std::numeric_limits<double>::infinity(), false, false);
    row(std::nan(""), false, false);
}

void TestTextNumbers::wholeNumbersOverflowOutsideTheirBits()
{
    QFETCH(const double, number);
    QFETCH(const bool, fits16);
    QFETCH(const bool, fits32);
    const auto raisedBy = [&](auto conversion) {
        try {
            const auto whole = conversion(number);
            return whole == roundHalfEven(number) ? 0 : -1;
        } catch (const RunTimeError &error) {
            return error.number();
        }
    };
    QCOMPARE(raisedBy(toInt16), fits16 ? 0 : 6);
    QCOMPARE(raisedBy(toInt32), fits32 ? 0 : 6);
}

KELDOX_TEST(TestTextNumbers)
#include "TestTextNumbers.moc"
