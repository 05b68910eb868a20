// What a unit tells of itself, as its channel's row shows it.
#include "ChannelsBench.h"

class TestChannelEvents : public QObject
{
    Q_OBJECT

private slots:
    void agcOn();
    void agcOff();
    void agcOffWithoutAttenuator();
    void agcOfAUnitWithoutOffsetShowsNoBox();
    void frequency();
    void attenuationsAreWrittenTwice();
    void bypass();
    void offset();
    void unitChange_data();
    void unitChange();
    void unitWithoutOffsetShowsZero();
    void unitWithoutAGCShowsItsAttenuation();
    void firstConnectionOfARow();
    void missingUnitIsReportedOnce();
    void theUnitBeforeIsNoLongerHeard();
    void replacedWhileAReplyIsAwaited();
    void unpluggedUnitDisablesItsRow();
    void unpluggedWhileAReplyIsAwaited();
    void twoUnitsKeepToTheirRows();
};

void TestChannelEvents::agcOn()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.agcOffset = -3;
    b.connected(1, settings);
    b.click(b.check("chkChanAGC"));
    QVERIFY(b.check("chkChanAGC")->isChecked());
    QCOMPARE(b.box("txtChanAtten")->text(), QString());
    QVERIFY(!b.box("txtChanAtten")->isEnabled());
    QCOMPARE(b.box("txtChanAGCoffset")->text(), QStringLiteral("-3"));
    QVERIFY(b.row(1).AGC_Active());
}

void TestChannelEvents::agcOff()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.agc = true;
    settings.attenuation = 12.5;
    b.connected(1, settings);
    b.click(b.check("chkChanAGC"));
    QVERIFY(!b.check("chkChanAGC")->isChecked());
    QCOMPARE(b.box("txtChanAGCoffset")->text(), QString());
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("12.5"));
    QVERIFY(!b.row(1).AGC_Active());
}

void TestChannelEvents::agcOffWithoutAttenuator()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::unitWith(sim::OptionInputAttenuator));
    b.box("txtChanAGCoffset")->setText(QStringLiteral("4"));
    b.row(1).m_Device_AGCChange(false);
    QCOMPARE(b.box("txtChanAGCoffset")->text(), QString());
    QCOMPARE(b.sent(), QStringList());
}

void TestChannelEvents::agcOfAUnitWithoutOffsetShowsNoBox()
{
    ChannelsBench b;
    b.connected(1); // firmware 3.38 has lost the offset
    b.click(b.check("chkChanAGC"));
    QVERIFY(b.sent().contains(QStringLiteral("*AOFF?")));
    QCOMPARE(b.box("txtChanAGCoffset")->text(), QStringLiteral("0"));
    QVERIFY(!b.box("txtChanAGCoffset")->isEnabled());
    QVERIFY(b.fixture.boxes.texts().isEmpty());
    QVERIFY(b.row(1).Device()->displaysErrors());
}

void TestChannelEvents::frequency()
{
    ChannelsBench b;
    const auto device = b.connected(1);
    emit device->FreqChange(40, 145.5);
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("145.5"));
    emit device->FreqChange(40, 0.0125);
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("0.0125"));
    QCOMPARE(b.sent(), QStringList());
}

void TestChannelEvents::attenuationsAreWrittenTwice()
{
    ChannelsBench b;
    const auto device = b.connected(1);
    for (const auto &[name, raise] :
         {std::pair{"txtChanAtten", &clsKeldoX::AttenChange},
          std::pair{"txtChanInputAtten", &clsKeldoX::InputAttenChange}}) {
        QLineEdit *box = b.box(name);
        box->setText(QStringLiteral("7"));
        QStringList writes;
        const auto watch = connect(box, &QLineEdit::textChanged, this,
                                   [&](const QString &text) { writes.append(text); });
        emit(device.get()->*raise)(7);
        disconnect(watch);
        QCOMPARE(writes, QStringList({QString(), QStringLiteral("7")}));
    }
}

void TestChannelEvents::bypass()
{
    ChannelsBench b;
    const auto device = b.connected(1);
    emit device->BypassChange(true);
    QVERIFY(b.check("chkChanBYP")->isChecked());
    emit device->BypassChange(false);
    QVERIFY(!b.check("chkChanBYP")->isChecked());
    QCOMPARE(b.sent(), QStringList());
}

void TestChannelEvents::offset()
{
    ChannelsBench b;
    const auto device = b.connected(1);
    emit device->AGCOffsetChange(-2.5);
    QCOMPARE(b.box("txtChanAGCoffset")->text(), QStringLiteral("-2.5"));
}

void TestChannelEvents::unitChange_data()
{
    QTest::addColumn<int>("optionA");
    QTest::addColumn<bool>("agc");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("bypass");
    QTest::addColumn<QString>("transcript");
    QTest::newRow("everything, AGC off")
        << 14 << false << "3.17" << true
        << "*ACT_?|*AOFF?|*MXAT?|*ATT STEP? |*AGC_?|*ATTN?|INPUT ATTN?";
    QTest::newRow("everything, AGC on")
        << 14 << true << "3.17" << true
        << "*ACT_?|*AOFF?|*MXAT?|*ATT STEP? |*AGC_?|*AOFF?|INPUT ATTN?";
    QTest::newRow("no offset") << 14 << false << "3.38" << true
                               << "*ACT_?|*MXAT?|*ATT STEP? |*AGC_?|*ATTN?|INPUT ATTN?";
    QTest::newRow("no bypass") << 14 << false << "3.38" << false
                               << "*MXAT?|*ATT STEP? |*AGC_?|*ATTN?|INPUT ATTN?";
    QTest::newRow("no AGC") << 4 << false << "3.38" << false
                            << "*MXAT?|*ATT STEP? |INPUT ATTN?|*ATTN?";
    QTest::newRow("nothing") << 0 << false << "3.38" << false << "*MXAT?|*ATT STEP? |INPUT ATTN?";
    QTest::newRow("old firmware, maximum from the option word")
        << 2 << false << "2.3" << false << "*AOFF?|*ATT STEP? |*AGC_?|*ATTN?|INPUT ATTN?";
    QTest::newRow("firmware 1.6") << 2 << false << "1.6" << false << "*ATT STEP? |INPUT ATTN?";
}

void TestChannelEvents::unitChange()
{
    QFETCH(int, optionA);
    QFETCH(bool, agc);
    QFETCH(QString, firmware);
    QFETCH(bool, bypass);
    QFETCH(QString, transcript);
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::unitWith(optionA, bypass, firmware.toStdString());
    settings.agc = agc;
    const auto device = b.bind(1, settings);
    b.row(1).setDevice(nullptr); // connected without its row
    QVERIFY(device->Initialize());
    b.row(1).setDevice(device);
    b.lines[1]->clearCommands();
    emit device->DUTChange();
    QCOMPARE(b.sent().join(QLatin1Char('|')), transcript);
}

void TestChannelEvents::unitWithoutOffsetShowsZero()
{
    for (const bool agc : {false, true}) {
        ChannelsBench b;
        sim::UnitSettings settings; // firmware 3.38
        settings.agc = agc;
        b.connected(1, settings);
        QCOMPARE(b.box("txtChanAGCoffset")->text(), QStringLiteral("0"));
    }
}

void TestChannelEvents::unitWithoutAGCShowsItsAttenuation()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::unitWith(sim::OptionAttenuatorA);
    settings.attenuation = 20;
    b.connected(1, settings);
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("20"));
    b.up("udAtten");
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ATTN 20.5")});
}

void TestChannelEvents::firstConnectionOfARow()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.step = 100;
    settings.attenuation = 10;
    settings.inputAttenuation = 4.5;
    settings.bypass = true;
    b.connected(1, settings);
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("102.5"));
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("10"));
    QCOMPARE(b.box("txtChanInputAtten")->text(), QStringLiteral("4.5"));
    QCOMPARE(b.box("txtChanAGCoffset")->text(), QString()); // AGC is off
    QVERIFY(b.check("chkChanBYP")->isChecked());
    QVERIFY(!b.check("chkChanAGC")->isChecked());
}

void TestChannelEvents::missingUnitIsReportedOnce()
{
    ChannelsBench b;
    b.fixture.boxes.expectStart(QStringLiteral("Error 91 ("));
    b.fixture.boxes.expectStart(QStringLiteral("Error 91 ("));
    b.row(1).m_Device_DUTChange();
    QCOMPARE(b.boxesFrom(QStringLiteral("clsChannel.m_Device_DUTChange")), 1);
    b.row(1).m_Device_AGCChange(true);
    QCOMPARE(b.boxesFrom(QStringLiteral("clsChannel.m_Device_AGCChange")), 1);
}

void TestChannelEvents::theUnitBeforeIsNoLongerHeard()
{
    ChannelsBench b;
    const auto before = b.connected(1);
    const auto after = b.bind(1);
    emit before->FreqChange(1, 333);
    QVERIFY(b.box("txtChanFreq")->text() != QStringLiteral("333"));
    emit after->FreqChange(1, 333);
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("333"));
    b.row(1).setDevice(nullptr);
    emit after->FreqChange(1, 444);
    QCOMPARE(b.box("txtChanFreq")->text(), QString()); // nothing of either
}

void TestChannelEvents::replacedWhileAReplyIsAwaited()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.attenuation = 22;
    const auto before = b.connected(1, settings);
    b.box("txtChanAtten")->clear();
    // The answer to the attenuation query comes when the channel has another unit already.
    QTimer::singleShot(0, this, [&] { b.row(1).setDevice(std::make_shared<clsKeldoX>()); });
    b.row(1).m_Device_AGCChange(false);
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ATTN?")});
    QCOMPARE(b.box("txtChanAtten")->text(), QString());
}

void TestChannelEvents::unpluggedUnitDisablesItsRow()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.fixture.boxes.acceptAll();
    b.lines[1]->unplug();
    QTRY_VERIFY(!b.box("txtChanFreq")->isEnabled());
    QVERIFY(!b.arrows("udAtten")->isEnabled());
    QVERIFY(b.find<QRadioButton>("optPortNum", 1)->isEnabled());
}

void TestChannelEvents::unpluggedWhileAReplyIsAwaited()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.fixture.boxes.acceptAll();
    b.lines[1]->setFault(sim::Fault::Unplug, "*AGC_?");
    b.click(b.check("chkChanAGC"));
    QTRY_VERIFY(!b.box("txtChanFreq")->isEnabled());
    QVERIFY(!b.check("chkChanAGC")->isEnabled());
    QVERIFY(!b.box("txtChanAGCoffset")->isEnabled());
    QVERIFY(app().guard().isUp());
}

void TestChannelEvents::twoUnitsKeepToTheirRows()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.connected(2, ChannelsBench::fullUnit());
    // The first row rests until it is connected again.
    QVERIFY(!b.box("txtChanAtten", 1)->isEnabled());
    QVERIFY(!b.arrows("udAtten", 1)->isEnabled());
    b.lines[1]->clearCommands();
    b.enter(b.box("txtChanAtten", 2), QStringLiteral("5"));
    QCOMPARE(b.sent(1), QStringList());
    QCOMPARE(b.units[2]->attenuation(), 5.0);
    QCOMPARE(b.box("txtChanAtten", 1)->text(), QStringLiteral("0"));
    b.select(1);
    QVERIFY(b.box("txtChanAtten", 1)->isEnabled());
    QVERIFY(!b.box("txtChanAtten", 2)->isEnabled());
}

KELDOX_TEST(TestChannelEvents)
#include "TestChannelEvents.moc"
