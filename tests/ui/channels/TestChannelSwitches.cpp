// The check boxes and the port option of a channel's row.
#include "ChannelsBench.h"

class TestChannelSwitches : public QObject
{
    Q_OBJECT

private slots:
    void bypassClick();
    void refusedBypassGoesBack();
    void agcClickSendsAndEnables();
    void refusedAGCGoesBack();
    void checksOfAClosedPortGoBack();
    void portOptionLogsAndConnects();
    void portOptionTakesTheUnitOfTheTable();
    void anEmptySlotGivesTheRowTheNewUnit();
    void aFailedConnectionDisablesTheRow();
    void aLaterTryReadsTheOptionsAnew();
    void clickingTheSelectedOptionConnectsAgain();
};

static const sim::UnitSettings full = ChannelsBench::fullUnit();

void TestChannelSwitches::bypassClick()
{
    ChannelsBench b;
    b.connected(1, full);
    b.click(b.check("chkChanBYP"));
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ACT_ 1")});
    QVERIFY(b.units[1]->bypass());
    b.click(b.check("chkChanBYP"));
    QCOMPARE(b.sent().last(), QStringLiteral("*ACT_ 0"));
    QVERIFY(!b.check("chkChanBYP")->isChecked());
}

void TestChannelSwitches::refusedBypassGoesBack()
{
    ChannelsBench b;
    b.connected(1, full);
    b.lines[1]->setFault(sim::Fault::PermissionDenied);
    b.click(b.check("chkChanBYP"));
    QVERIFY(!b.check("chkChanBYP")->isChecked());
}

void TestChannelSwitches::agcClickSendsAndEnables()
{
    ChannelsBench b;
    b.connected(1, full);
    b.click(b.check("chkChanAGC"));
    // The setting and what its event shows, then the row's state with the AGC read again.
    QCOMPARE(b.sent(), QStringList({QStringLiteral("*AGC_ 1"), QStringLiteral("*AOFF?"),
                                    QStringLiteral("*AGC_?"), QStringLiteral("*AOFF?"),
                                    QStringLiteral("INPUT ATTN?")}));
    QVERIFY(!b.box("txtChanAtten")->isEnabled());
    QVERIFY(b.box("txtChanAGCoffset")->isEnabled());
    b.click(b.check("chkChanAGC"));
    QVERIFY(b.box("txtChanAtten")->isEnabled());
    QVERIFY(!b.box("txtChanAGCoffset")->isEnabled());
    QVERIFY(!b.units[1]->agc());
}

void TestChannelSwitches::refusedAGCGoesBack()
{
    ChannelsBench b;
    b.connected(1, full);
    b.lines[1]->setFault(sim::Fault::PermissionDenied);
    b.click(b.check("chkChanAGC"));
    QVERIFY(!b.check("chkChanAGC")->isChecked());
    QVERIFY(b.box("txtChanAtten")->isEnabled());
}

void TestChannelSwitches::checksOfAClosedPortGoBack()
{
    ChannelsBench b;
    const auto device = b.connected(1, full);
    device->commPort()->ClosePort();
    b.click(b.check("chkChanAGC"));
    b.click(b.check("chkChanBYP"));
    QVERIFY(!b.check("chkChanAGC")->isChecked());
    QVERIFY(!b.check("chkChanBYP")->isChecked());
    QCOMPARE(b.sent(), QStringList());
}

void TestChannelSwitches::portOptionLogsAndConnects()
{
    ChannelsBench b;
    const auto device = b.bind(3, full);
    b.select(3);
    QCOMPARE(b.log->lines().mid(0, 2), QStringList({QStringLiteral("clsChannel|optPortNumClick  3"),
                                                    QStringLiteral("Channel3 |connecting... ")}));
    QVERIFY(b.log->lines().contains(QStringLiteral("Channel3 |connected")));
    QCOMPARE(app().currentDevice, device);
    QCOMPARE(b.window->ChanIndex(), 3);
    QCOMPARE(b.box("txtChanFreq", 3)->text(), QStringLiteral("100"));
}

void TestChannelSwitches::portOptionTakesTheUnitOfTheTable()
{
    ChannelsBench b;
    b.bind(1, full);
    const auto inTable = app().devices[1];
    b.row(1).setDevice(std::make_shared<clsKeldoX>());
    b.select(1);
    QCOMPARE(b.row(1).Device(), inTable);
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("100"));
}

void TestChannelSwitches::anEmptySlotGivesTheRowTheNewUnit()
{
    ChannelsBench b;
    b.row(2).setStatus(1);
    b.row(2).optPortNumClick();
    QVERIFY(app().devices[2]);
    QCOMPARE(b.row(2).Device(), app().devices[2]);
}

void TestChannelSwitches::aFailedConnectionDisablesTheRow()
{
    ChannelsBench b;
    b.connected(1, full);
    b.lines[1]->setFault(sim::Fault::Garbage);
    b.fixture.boxes.expect(QStringLiteral("The device did not respond correctly to an ID query."),
                           MessageBox::Exclamation);
    b.select(1);
    QVERIFY(!b.box("txtChanFreq")->isEnabled());
    QVERIFY(!b.arrows("udAtten")->isEnabled());
    QVERIFY(!b.check("chkChanAGC")->isEnabled());
    QCOMPARE(b.box("txtChanFreq")->text(), QString());
    QVERIFY(b.find<QRadioButton>("optPortNum", 1)->isEnabled());
    b.lines[1]->setFault(sim::Fault::None);
    b.select(1);
    QVERIFY(b.box("txtChanFreq")->isEnabled());
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("100"));
}

void TestChannelSwitches::aLaterTryReadsTheOptionsAnew()
{
    ChannelsBench b;
    b.bind(1, full);
    b.lines[1]->setFault(sim::Fault::Garbage);
    b.fixture.boxes.expectStart(QStringLiteral("The device did not respond correctly to an ID"));
    b.select(1);
    b.lines[1]->clearCommands();
    b.row(1).ShowControls(); // as the search does; a unit that does not answer is not asked
    QCOMPARE(b.sent(), QStringList());
    QVERIFY(b.box("txtChanFreq")->isVisible());
    QVERIFY(!b.box("txtChanAtten")->isVisible());
    b.lines[1]->setFault(sim::Fault::None);
    b.select(1);
    QVERIFY(b.box("txtChanAtten")->isVisible());
    b.up("udAtten");
    QCOMPARE(b.units[1]->attenuation(), 0.5);
}

void TestChannelSwitches::clickingTheSelectedOptionConnectsAgain()
{
    ChannelsBench b;
    b.connected(1, full);
    b.select(1);
    QVERIFY(b.sent().contains(QStringLiteral("*ID?")));
    QVERIFY(!b.sent().contains(QStringLiteral("*MXAT?"))); // the options are kept
    QCOMPARE(b.window->ChanIndex(), 1);
}

KELDOX_TEST(TestChannelSwitches)
#include "TestChannelSwitches.moc"
