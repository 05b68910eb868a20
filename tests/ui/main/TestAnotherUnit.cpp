// The main window pointed at another unit: nothing of the one before stays, and what the new one
// cannot tell stays empty.
#include "MainBench.h"

class TestAnotherUnit : public QObject
{
    Q_OBJECT

private slots:
    void theCaptionsStandAsDesignedUntilAUnitIsShown();
    void pointingTheWindowAtAUnitEmptiesIt();
    void anUnreadValueIsNotMadeUp_data();
    void anUnreadValueIsNotMadeUp();
    void aFailedSettingTellsNoPlaceWhereNoneIsKnown();
    void thePlaceThatIsReadLaterIsShown();
    void aStartThatIsReadLaterIsShown();
    void anUnreadFineTuningStaysEmpty();
    void aFailedConnectionLeavesNothing();
    void draggingAsksNothing();
    void draggingWhileAUnitIsConnectedAsksNothing();
};

namespace {

QString meaning(const MainBench &bench)
{
    return bench.find<IndicatorLight>("ShapeOneBitLight")->toolTip();
}

// Another unit on the same line, with the replies of the script.
void connectAnother(ConnectedBench &bench)
{
    bench.unit->commPort()->ClosePort();
    bench.unit = makeUnit();
    bench.connectUnit();
}

// Every command that reaches the line from now on.
void hear(ConnectedBench &bench, QStringList &commands)
{
    bench.line.setListener([&commands](bool fromUnit, const std::string &text) {
        if (!fromUnit)
            commands.append(QString::fromStdString(text));
    });
}

sim::UnitSettings tunedUnit()
{
    sim::UnitSettings settings = smallUnit();
    settings.step = 260; // 106.5 MHz
    return settings;
}

void isEmpty(const MainBench &bench)
{
    QCOMPARE(bench.frequency()->text(), QString());
    QCOMPARE(bench.slider()->value(), 0);
    QVERIFY(!bench.slider()->isEnabled());
}

} // namespace

void TestAnotherUnit::theCaptionsStandAsDesignedUntilAUnitIsShown()
{
    MainBench bench;
    bench.show();
    QCOMPARE(bench.caption("lblChannelSpacing"), QStringLiteral("frequency spacing"));
    QCOMPARE(bench.caption("lblbandwidth"), QStringLiteral("channel bandwidth"));
    bench.window->resetForSearch();
    bench.window->showNotConnected();
    QCOMPARE(bench.caption("lblChannelSpacing"), QStringLiteral("frequency spacing"));
}

void TestAnotherUnit::pointingTheWindowAtAUnitEmptiesIt()
{
    ConnectedBench bench(tunedUnit());
    emit bench.unit->InputAttenChange(12);
    QCOMPARE(meaning(bench), QStringLiteral("12 dB"));
    bench.window->setStatusPanel(2, QStringLiteral("OK"));
    bench.window->setDevice(makeUnit());
    isEmpty(bench);
    QVERIFY(!bench.frequency()->isEnabled());
    for (const char *name : {"txtFreq_1", "txtFreq_2", "txtFreq_3", "txtPelltrim"})
        QCOMPARE(bench.find<QLineEdit>(name)->text(), QString());
    QCOMPARE(bench.caption("lblChannelSpacing"), QString());
    QCOMPARE(bench.caption("lblbandwidth"), QString());
    QCOMPARE(bench.panel(2), QString());
    QVERIFY(!bench.find<IndicatorLight>("ShapeOneBitLight")->fillColor().isValid());
    QCOMPARE(meaning(bench), QStringLiteral("not known"));
    QVERIFY(!bench.find<QWidget>("FrameInputLimiting")->isEnabled());
    QVERIFY(!bench.find<QWidget>("FramePelltrim")->isEnabled());
}

void TestAnotherUnit::anUnreadValueIsNotMadeUp_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<bool>("isSilent");
    QTest::addColumn<QStringList>("plan");
    const QStringList whole{QStringLiteral("100 MHz"), QStringLiteral("105 MHz"),
                            QStringLiteral("110 MHz")};
    QTest::addRow("step") << QByteArray("*STEP?") << false << whole;
    QTest::addRow("a silent step") << QByteArray("*STEP?") << true << whole;
    QTest::addRow("start") << QByteArray("*START FREQ?") << false
                           << QStringList{QString(), QString(), QString()};
    QTest::addRow("spacing") << QByteArray("*CHAN SPACE?") << false
                             << QStringList{QStringLiteral("100 MHz"), QString(), QString()};
}

void TestAnotherUnit::anUnreadValueIsNotMadeUp()
{
    QFETCH(const QByteArray, query);
    QFETCH(const bool, isSilent);
    QFETCH(const QStringList, plan);
    ConnectedBench bench(tunedUnit());
    QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5"));
    bench.boxes().acceptAll();
    bench.reply(query.toStdString(),
                isSilent ? std::nullopt : std::optional<std::string>("~}#@q%!x$"));
    connectAnother(bench);
    isEmpty(bench);
    QVERIFY(bench.frequency()->isEnabled()); // a frequency can be typed
    for (int i = 0; i < 3; ++i)
        QCOMPARE(bench.find<QLineEdit>(qPrintable(QStringLiteral("txtFreq_%1").arg(i + 1)))->text(),
                 plan.at(i));
    bench.sent();
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    QCOMPARE(bench.sent(), QStringList());
}

void TestAnotherUnit::aFailedSettingTellsNoPlaceWhereNoneIsKnown()
{
    ConnectedBench bench(tunedUnit());
    bench.boxes().acceptAll();
    bench.reply("*STEP?", "WHAT?");
    connectAnother(bench);
    bench.reply("*STEP 200", "WHAT?");
    bench.enter(QStringLiteral("105"));
    QVERIFY(!bench.slider()->isEnabled());
    QVERIFY(bench.frequency()->text() != QStringLiteral("100")); // step 0 has never been read
}

void TestAnotherUnit::thePlaceThatIsReadLaterIsShown()
{
    ConnectedBench bench(tunedUnit());
    bench.boxes().acceptAll();
    bench.reply("*STEP?", "WHAT?");
    connectAnother(bench);
    bench.script->clear();
    bench.entry("mnuOptionsReadAgain")->trigger();
    QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5"));
    QCOMPARE(bench.slider()->value(), 260);
    QVERIFY(bench.slider()->isEnabled());
}

void TestAnotherUnit::aStartThatIsReadLaterIsShown()
{
    for (const char *query : {"*START FREQ?", "*CHAN SPACE?"}) {
        ConnectedBench bench(tunedUnit());
        bench.boxes().acceptAll();
        bench.reply(query, "WHAT?");
        connectAnother(bench);
        bench.script->clear();
        bench.entry("mnuOptionsReadAgain")->trigger();
        QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5"));
        QVERIFY(bench.slider()->isEnabled());
    }
}

void TestAnotherUnit::anUnreadFineTuningStaysEmpty()
{
    sim::UnitSettings settings = smallUnit();
    settings.fineTuning = 77;
    ConnectedBench bench(settings);
    QCOMPARE(bench.find<QLineEdit>("txtPelltrim")->text(), QStringLiteral("77"));
    bench.boxes().acceptAll();
    bench.reply("*ZNSE?", "WHAT?");
    connectAnother(bench);
    QCOMPARE(bench.find<QLineEdit>("txtPelltrim")->text(), QString());
    QVERIFY(!bench.find<QLineEdit>("txtPelltrim")->isEnabled());
    QVERIFY(!bench.find<QScrollBar>("HScroll_Pelltrim")->isEnabled());
    bench.script->clear();
    bench.entry("mnuOptionsReadAgain")->trigger();
    QCOMPARE(bench.find<QLineEdit>("txtPelltrim")->text(), QStringLiteral("77"));
    QVERIFY(bench.find<QScrollBar>("HScroll_Pelltrim")->isEnabled());
}

void TestAnotherUnit::aFailedConnectionLeavesNothing()
{
    ConnectedBench bench(tunedUnit());
    bench.boxes().acceptAll();
    bench.reply("*ID?", "A STRANGER");
    app().guard().set(false);
    bench.window->setDevice(bench.unit);
    QVERIFY(!bench.unit->Initialize());
    app().guard().set(true);
    isEmpty(bench);
    QVERIFY(!bench.frequency()->isEnabled());
}

void TestAnotherUnit::draggingAsksNothing()
{
    ConnectedBench bench(tunedUnit());
    bench.boxes().acceptAll();
    bench.reply("*CHAN SPACE?", "WHAT?");
    connectAnother(bench);
    bench.sent();
    emit bench.slider()->sliderMoved(300); // the thumb of a slider that is disabled meanwhile
    QCOMPARE(bench.sent(), QStringList());
    QCOMPARE(bench.frequency()->text(), QString());
}

void TestAnotherUnit::draggingWhileAUnitIsConnectedAsksNothing()
{
    ConnectedBench bench(tunedUnit());
    QStringList quiet;
    QStringList dragged;
    int moves = 0;
    hear(bench, quiet);
    connectAnother(bench);
    hear(bench, dragged);
    bench.log->events.clear();
    QTimer drag; // turns whenever a reply is awaited
    connect(&drag, &QTimer::timeout, this, [&] {
        ++moves;
        emit bench.slider()->sliderMoved(300);
    });
    drag.start(0);
    connectAnother(bench);
    drag.stop();
    bench.line.setListener({});
    QVERIFY(moves > 10);
    QCOMPARE(dragged, quiet);
    for (const auto &event : bench.log->events) // nothing was asked for in vain either
        QVERIFY2(!event.second.contains(QStringLiteral("not sent")), qPrintable(event.second));
    emit bench.unit->FreqChange(260, 106.5); // the drag is over
    QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5"));
    QCOMPARE(bench.slider()->value(), 260);
}

KELDOX_TEST(TestAnotherUnit)
#include "TestAnotherUnit.moc"
