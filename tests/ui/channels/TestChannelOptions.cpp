// A channel's binding: its row, its unit, and when the unit is asked for its options.
#include "ChannelsBench.h"

class TestChannelOptions : public QObject
{
    Q_OBJECT

private slots:
    void theIndexIsAlsoTheChannelNumber();
    void anIndexWithoutControlsIsReported();
    void theChannelLoadsTheWindowItNeeds();
    void optionsAreReadOnceAndKept();
    void initChannelMakesThemBeReadAnew();
    void anotherUnitIsAskedForItsOwnOptions();
    void showControlsReportsAMissingUnit();
};

void TestChannelOptions::theIndexIsAlsoTheChannelNumber()
{
    const ChannelsBench b;
    clsChannel &row = b.row(3);
    QCOMPARE(row.Index(), 3);
    QCOMPARE(row.ChannelNumber(), 3);
    row.setChannelNumber(7);
    QCOMPARE(row.ChannelNumber(), 7);
    QCOMPARE(row.Index(), 3);
    row.setIndex(5);
    QCOMPARE(row.ChannelNumber(), 5);
}

void TestChannelOptions::anIndexWithoutControlsIsReported()
{
    ChannelsBench b;
    b.fixture.boxes.expectStart(QStringLiteral("Error 9 ("));
    clsChannel row([&b] { return b.window; });
    row.setIndex(9);
    QCOMPARE(row.Index(), 9);
    QCOMPARE(b.boxesFrom(QStringLiteral("clsChannel.Index")), 1);
}

void TestChannelOptions::theChannelLoadsTheWindowItNeeds()
{
    const Fixture fixture;
    int made = 0;
    const WindowMakers makers = windowMakers();
    app().makers.channelsWindow = [&] {
        ++made;
        return makers.channelsWindow();
    };
    const auto row = makers.channel();
    QCOMPARE(made, 0);
    row->setIndex(1);
    QCOMPARE(made, 1);
    QVERIFY(std::dynamic_pointer_cast<frmChannels>(app().channelsWindow())->isLoaded());
}

void TestChannelOptions::optionsAreReadOnceAndKept()
{
    ChannelsBench b;
    const auto device = b.bind(1, ChannelsBench::fullUnit());
    QVERIFY(device->Initialize());
    b.row(1).InitChannel();
    b.lines[1]->clearCommands();
    b.row(1).ShowControls();
    QCOMPARE(b.sent(), QStringList({QStringLiteral("*MXAT?"), QStringLiteral("*ATT STEP? ")}));
    b.row(1).ShowControls();
    b.row(1).EnableOrDisableControlsAsAppropriate();
    QVERIFY(!b.sent().mid(2).contains(QStringLiteral("*MXAT?")));
}

void TestChannelOptions::initChannelMakesThemBeReadAnew()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.row(1).InitChannel();
    b.row(1).EnableOrDisableControlsAsAppropriate();
    QCOMPARE(b.sent().mid(0, 2),
             QStringList({QStringLiteral("*MXAT?"), QStringLiteral("*ATT STEP? ")}));
}

void TestChannelOptions::anotherUnitIsAskedForItsOwnOptions()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    QVERIFY(b.row(1).HasAGC());
    const auto other = b.bind(2, ChannelsBench::unitWith(sim::OptionAttenuator15));
    QVERIFY(other->Initialize());
    b.row(1).setDevice(other);
    b.row(1).ShowControls();
    QVERIFY(!b.row(1).HasAGC());
    QVERIFY(b.row(1).HasAtten());
}

void TestChannelOptions::showControlsReportsAMissingUnit()
{
    ChannelsBench b;
    b.fixture.boxes.expectStart(QStringLiteral("Error 91 ("));
    b.row(2).ShowControls();
    QCOMPARE(b.boxesFrom(QStringLiteral("clsChannel.ShowControls")), 1);
    QCOMPARE(b.visibleNames(2), QStringLiteral("optPortNum txtChanFreq"));
}

KELDOX_TEST(TestChannelOptions)
#include "TestChannelOptions.moc"
