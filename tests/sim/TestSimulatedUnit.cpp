// What a simulated unit answers to each command, in tables.
#include "UnitUnderTest.h"

#include "support/TestMain.h"

class TestSimulatedUnit : public QObject
{
    Q_OBJECT

private slots:
    void queries_data();
    void queries();
    void settings_data();
    void settings();
    void firmwareBands_data();
    void firmwareBands();
    void firmwareNumber_data();
    void firmwareNumber();
};

void TestSimulatedUnit::queries_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *command, const char *answer) {
        QTest::newRow(command) << QByteArray(command) << QString::fromLatin1(answer);
    };
    row("*ID?", "KELDO-X");
    row("*REVISION?", "KELDO-X REV 3.38");
    row("*START FREQ?", "145.5 MHz");
    row("*IFRQ?", "21.4 MHz");
    row("*BNDW?", "12500");
    row("*CHAN SPACE?", "25000 Hz");
    row("*MAX STEP?", "800");
    row("*STEP?", "77");
    row("*PRSC?", "128");
    row("*AGC_?", "0");
    row("*ATTN?", "10.5 dB");
    row("*MXAT?", "45");
    row("*ATT STEP?", "0.5 dB steps");
    row("*ATT STEP? ", "0.5 dB steps");
    row("INPUT ATTN?", "3 dB");
    row("*ACT_?", "1");
    row("InputLimitMode?", "2");
    row("*AOPT?", "14");
    row("OPTC?", "2");
    row("*BYP_?", "1");
    row("*LOCK?", "LOCKED");
    row("*ZNSE?", "40 clicks");
    row("*ZNCA?", "41 clicks");
    row("*ZNCM?", "0");
    row("DETA?", "700");
    row("DETB?", "300");
    row("*DBND?", "5");
    row("*ATAB?", "36");
    row("*DATA?", "99");
    row("", "(silence)");
    row("ID", unknown);
    row("*NONSENSE?", unknown);
    row("*id?", unknown);
    row("*STEP", unknown);
    row("*STEP x", unknown);
}

void TestSimulatedUnit::queries()
{
    QFETCH(QByteArray, command);
    SimulatedUnit unit(distinct());
    QTEST(reply(unit, command), "answer");
}

void TestSimulatedUnit::settings_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *command, const char *answer) {
        QTest::newRow(command) << QByteArray(command) << QString::fromLatin1(answer);
    };
    row("*STEP 250", "LOCKED");
    row("*STEP 0", "LOCKED");
    row("*STEP 4000", "LOCKED");
    row("*STEP 4001", tooFar);
    row("*STEP-1", tooFar);
    row("*STEP 2.5", tooFar);
    row("!SFRQ 70000000", "70000000");
    row("!SFRQ 0", tooFar);
    row("!IFRQ 45000000", "45000000");
    row("!BNDW 15000", "15000");
    row("!CHSP 12500", "12500");
    row("!CHSP 0", tooFar);
    row("!MXST 100", "100");
    row("!MXST 0", tooFar);
    row("!PRSC 64", "64");
    row("!PRSC 128", "128");
    row("!PRSC 65", tooFar);
    row("*AGC_ 1", "1");
    row("*AGC_ 0", "0");
    row("*AGC_ 2", tooFar);
    row("*ATTN 10", "10");
    row("*ATTN 2.5", "2.5");
    row("*ATTN 50", "50");
    row("*ATTN 50.5", tooFar);
    row("*ATTN-0.5", tooFar);
    row("INPUT ATTN 31.5", "31.5");
    row("INPUT ATTN 32", tooFar);
    row("*ACT_ 1", "1");
    row("*ACT_ 3", tooFar);
    row("InputLimitMode 4", "4");
    row("InputLimitMode 5", tooFar);
    row("*ZNSE 40", "40 clicks");
    row("*ZNSE 255", "255 clicks");
    row("*ZNSE 300", tooFar);
    row("!ZNCA 0", "0 clicks");
    row("!ZNCA-1", tooFar);
    row("*ZNCM 1", "1");
    row("!DBND 7", "7");
    row("!SRCE 86", "Address 86");
    row("!SRCE 256", tooFar);
    row("!WDAT 12", "Address 36 Data 12");
    row("!WDAT 256", tooFar);
    row("!ATAB 86", "Added 512");
    row("!AOPT 3", "3");
    row("OPTC 0", "0");
    row("!AGC 0", "0");
    row("!BYP_ 1", "1");
    row("!ADDR 7", "7");
    row("!ADDR 100", tooFar);
    row("PASSWORD anything", "OK");
    row("PASSWORD ", "OK");
    row("PASSWORDS", unknown);
}

void TestSimulatedUnit::settings()
{
    QFETCH(QByteArray, command);
    SimulatedUnit unit;
    QTEST(reply(unit, command), "answer");
}

void TestSimulatedUnit::firmwareBands_data()
{
    QTest::addColumn<QByteArray>("firmware");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<bool>("known");
    const auto edge = [](const char *command, const char *firmware, bool known) {
        QTest::addRow("%s on %s", command, firmware)
            << QByteArray(firmware) << QByteArray(command) << known;
    };
    for (const char *const above16 :
         {"*BNDW?", "!BNDW 1", "*AGC_ 0", "*BYP_?", "!BYP_ 1", "*ACT_?", "*ACT_ 0"}) {
        edge(above16, " 1.6", false);
        edge(above16, "1.61", true);
    }
    for (const char *const from20 :
         {"*AOPT?", "!AOPT 2", "!AGC 1", "*AOFF?", "!AOFF 3", "*ZNSE?", "*BOPT?", "!BOPT 2"}) {
        edge(from20, "1.99", false);
        edge(from20, " 2.0", true);
    }
    for (const char *const offset : {"*AOFF?", "!AOFF -3", "!AOFF  1.5"}) {
        edge(offset, "3.17", true);
        edge(offset, "3.18", false);
    }
    edge("*ZNCM?", "2.27", false);
    edge("*ZNCM?", "2.28", true);
    edge("*ZNCM 1", "2.27", false);
    edge("*ZNCM 1", "2.28", true);
    edge("*MXAT?", " 2.3", false);
    edge("*MXAT?", "2.31", true);
    edge("DETA?", "2.32", false);
    edge("DETA?", "2.33", true);
    edge("DETB?", " 1.0", true);
    edge("InputLimitMode?", "3.36", false);
    edge("InputLimitMode?", "3.37", true);
    edge("InputLimitMode 1", "3.36", false);
    edge("InputLimitMode 1", "3.37", true);
    for (const char *const wordB : {"*BOPT?", "!BOPT 2"}) {
        edge(wordB, "3.37", true);
        edge(wordB, "3.38", false);
    }
    for (const char *const wordC : {"OPTC?", "OPTC 2"}) {
        edge(wordC, "3.37", false);
        edge(wordC, "3.38", true);
    }
    for (const char *const anyFirmware : {"*ID?", "*REVISION?", "*AGC_?", "*ATTN?", "*ATTN 1",
                                          "*ATT STEP?", "*STEP 1", "*LOCK?", "*IFRQ?", "!ADDR 1"})
        edge(anyFirmware, " 1.0", true);
}

void TestSimulatedUnit::firmwareBands()
{
    QFETCH(QByteArray, firmware);
    QFETCH(QByteArray, command);
    SimulatedUnit unit(withFirmware(firmware));
    QFETCH(bool, known);
    QCOMPARE(reply(unit, command) != QLatin1String(unknown), known);
}

void TestSimulatedUnit::firmwareNumber_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("number");
    QTest::newRow("last four characters") << QByteArray("KELDO-X REV 3.38") << 3.38;
    QTest::newRow("blank before it") << QByteArray("REV 1.6") << 1.6;
    QTest::newRow("fewer than four characters") << QByteArray("2.0") << 2.0;
    QTest::newRow("no number") << QByteArray("KELDO-X") << 0.0;
    QTest::newRow("empty") << QByteArray() << 0.0;
}

void TestSimulatedUnit::firmwareNumber()
{
    QFETCH(QByteArray, text);
    QTEST(sim::firmwareNumber(text.toStdString()), "number");
}

KELDOX_TEST(TestSimulatedUnit)
#include "TestSimulatedUnit.moc"
