// What the unit's options and state show and enable in a channel's row.
#include "ChannelsBench.h"

class TestChannelControls : public QObject
{
    Q_OBJECT

private slots:
    void visibleControls_data();
    void visibleControls();
    void enabledControls_data();
    void enabledControls();
    void inputAttenuatorIsLookedAtEachTime();
    void aUnitWithoutInputAttenuatorIsAskedWithoutABox();
    void disabledRow();
    void enablingEnablesTheWholeRowAgain();
    void hiddenRow();
    void portNumberIsThatOfThePort();
    void portIsShown();
    void statusOneSelectsWithoutClicking();
    void keptForTheCaller();
    void rowKeepsTheControlsOfAClosedWindow();
};

void TestChannelControls::visibleControls_data()
{
    QTest::addColumn<int>("optionA");
    QTest::addColumn<bool>("bypass");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("visible");
    const QString port = QStringLiteral("optPortNum lblPortNum txtChanFreq");
    const QString atten = QStringLiteral(" txtChanAtten udAtten lbldB");
    const QString input = QStringLiteral(" txtChanInputAtten udInputAtten");
    const QString agc = QStringLiteral(" chkChanAGC txtChanAGCoffset udAGCOffset lblAGCdB");
    const QString bypass = QStringLiteral(" chkChanBYP");
    QTest::newRow("nothing fitted") << 0 << false << "3.38" << port;
    QTest::newRow("attenuator 15 dB") << 1 << false << "3.38" << port + atten;
    QTest::newRow("attenuator kind 4") << 4 << false << "3.38" << port + atten;
    QTest::newRow("attenuator kind 16") << 16 << false << "3.38" << port + atten;
    QTest::newRow("input attenuator") << 8 << false << "3.38" << port + input;
    QTest::newRow("bypass") << 0 << true << "3.38" << port + bypass;
    QTest::newRow("AGC without an offset") << 2 << false << "3.38" << port + atten + agc;
    QTest::newRow("AGC with an offset") << 2 << false << "3.17" << port + atten + agc;
    QTest::newRow("everything") << 14 << true << "3.17" << port + atten + input + agc + bypass;
    QTest::newRow("firmware without options") << 14 << true << "1.6" << port;
}

void TestChannelControls::visibleControls()
{
    QFETCH(int, optionA);
    QFETCH(bool, bypass);
    QFETCH(QString, firmware);
    QFETCH(QString, visible);
    ChannelsBench b;
    b.connected(1, ChannelsBench::unitWith(optionA, bypass, firmware.toStdString()));
    QCOMPARE(b.visibleNames(), visible);
}

void TestChannelControls::enabledControls_data()
{
    QTest::addColumn<int>("optionA");
    QTest::addColumn<bool>("agcOn");
    QTest::addColumn<bool>("bypass");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("enabled");
    const QString port = QStringLiteral("optPortNum lblPortNum txtChanFreq");
    const QString atten = QStringLiteral(" txtChanAtten udAtten lbldB");
    const QString input = QStringLiteral(" txtChanInputAtten udInputAtten");
    const QString agc = QStringLiteral(" chkChanAGC");
    const QString offset = QStringLiteral(" txtChanAGCoffset udAGCOffset lblAGCdB");
    const QString bypass = QStringLiteral(" chkChanBYP");
    QTest::newRow("AGC off") << 14 << false << true << "3.17"
                             << port + atten + input + agc + bypass;
    QTest::newRow("AGC on") << 14 << true << true << "3.17" << port + input + agc + offset + bypass;
    QTest::newRow("AGC on, no offset")
        << 14 << true << true << "3.18" << port + input + agc + bypass;
    QTest::newRow("no AGC") << 4 << false << false << "3.38" << port + atten;
    QTest::newRow("no bypass") << 14 << false << false << "3.17" << port + atten + input + agc;
    QTest::newRow("AGC word of a unit without AGC") << 8 << true << false << "3.38" << port + input;
}

void TestChannelControls::enabledControls()
{
    QFETCH(int, optionA);
    QFETCH(bool, agcOn);
    QFETCH(bool, bypass);
    QFETCH(QString, firmware);
    QFETCH(QString, enabled);
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::unitWith(optionA, bypass, firmware.toStdString());
    settings.agc = agcOn;
    const auto device = b.bind(1, settings);
    b.row(1).DisableControls(); // the offset controls of a unit without AGC are left as they are
    b.select(1);
    QCOMPARE(b.enabledNames(), enabled);
}

void TestChannelControls::inputAttenuatorIsLookedAtEachTime()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::unitWith(sim::OptionAgc);
    settings.inputAttenuation = 12.5;
    const auto device = b.connected(1, settings);
    QVERIFY(!b.box("txtChanInputAtten")->isEnabled());
    b.units[1]->change([](sim::UnitSettings &unit) { unit.optionA |= sim::OptionInputAttenuator; });
    device->setHasAGC(true); // reads the option word again
    b.row(1).EnableOrDisableControlsAsAppropriate();
    QVERIFY(b.box("txtChanInputAtten")->isEnabled());
    QVERIFY(b.arrows("udInputAtten")->isEnabled());
    QCOMPARE(b.box("txtChanInputAtten")->text(), QStringLiteral("12.5"));
    // The other options stay as they were first read.
    QVERIFY(b.box("txtChanInputAtten")->isHidden());
}

void TestChannelControls::aUnitWithoutInputAttenuatorIsAskedWithoutABox()
{
    ChannelsBench b;
    const auto device = b.connected(1, ChannelsBench::unitWith(0, false));
    b.row(1).EnableOrDisableControlsAsAppropriate();
    QCOMPARE(b.sent(), QStringList{QStringLiteral("INPUT ATTN?")});
    QCOMPARE(b.box("txtChanInputAtten")->text(), QStringLiteral("0"));
    QVERIFY(device->displaysErrors());
    QVERIFY(b.fixture.boxes.texts().isEmpty());
}

void TestChannelControls::disabledRow()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.row(1).DisableControls();
    QCOMPARE(b.enabledNames(), QStringLiteral("optPortNum"));
    QCOMPARE(b.visibleNames(), ChannelsBench::rowNames().join(QLatin1Char(' ')));
}

void TestChannelControls::enablingEnablesTheWholeRowAgain()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    const QString before = b.enabledNames();
    b.row(1).DisableControls();
    b.select(1);
    QCOMPARE(b.enabledNames(), before);
    QVERIFY(before.contains(QStringLiteral("lblPortNum")));
    QVERIFY(before.contains(QStringLiteral("udAtten")));
}

void TestChannelControls::hiddenRow()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.row(1).HideControls();
    QCOMPARE(b.visibleNames(), QString());
    QCOMPARE(b.enabledNames(), QStringLiteral("optPortNum"));
}

void TestChannelControls::portNumberIsThatOfThePort()
{
    ChannelsBench b;
    const auto device = b.bind(4);
    QCOMPARE(b.row(4).ComPortNumber(), 4);
    b.row(4).setComPortNumber(11);
    QCOMPARE(device->commPort()->PortNumber(), 11);
    QCOMPARE(b.row(5).ComPortNumber(), 0);
}

void TestChannelControls::portIsShown()
{
    const ChannelsBench b;
    b.row(2).showPort(QStringLiteral("2"), QStringLiteral("select the device on COM7:"),
                      QStringLiteral("COM7:"));
    const auto *option = b.find<QRadioButton>("optPortNum", 2);
    QCOMPARE(option->text(), QStringLiteral("2"));
    QCOMPARE(option->toolTip(), QStringLiteral("select the device on COM7:"));
    QCOMPARE(b.find<QLabel>("lblPortNum", 2)->text(), QStringLiteral("COM7:"));
    QCOMPARE(b.visibleNames(2), QStringLiteral("optPortNum lblPortNum"));
}

void TestChannelControls::statusOneSelectsWithoutClicking()
{
    ChannelsBench b;
    b.bind(1);
    b.bind(2);
    b.row(2).setStatus(1);
    QCOMPARE(b.window->ChanIndex(), 2);
    QCOMPARE(b.sent(2), QStringList());
    b.row(1).setStatus(0); // not the selected one: nothing changes
    QCOMPARE(b.window->ChanIndex(), 2);
    b.row(1).setStatus(1);
    QCOMPARE(b.window->ChanIndex(), 1);
    QVERIFY(!b.find<QRadioButton>("optPortNum", 2)->isChecked());
    b.row(1).setStatus(0);
    QCOMPARE(b.window->ChanIndex(), 0);
}

void TestChannelControls::keptForTheCaller()
{
    const ChannelsBench b;
    clsChannel &row = b.row(1);
    QVERIFY(!row.IsActive() && !row.Exists() && !row.AGC_Active());
    row.setIsActive(true);
    row.setExists(true);
    row.setAGC_Active(true);
    row.setOptions(14);
    row.setHasAGC(true);
    row.setHasAtten(true);
    QVERIFY(row.IsActive() && row.Exists() && row.AGC_Active() && row.HasAGC() && row.HasAtten());
    QCOMPARE(row.Options(), 14);
}

void TestChannelControls::rowKeepsTheControlsOfAClosedWindow()
{
    ChannelsBench b;
    const auto device = b.connected(1, ChannelsBench::fullUnit());
    b.window->close();
    QVERIFY(!b.window->isVisible());
    device->setAtten(7.5);
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("7.5"));
}

KELDOX_TEST(TestChannelControls)
#include "TestChannelControls.moc"
