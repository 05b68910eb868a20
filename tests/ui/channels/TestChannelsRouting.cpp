// How the channels window forwards its controls' events: the guard, the sources of its error
// reports, and the frequency boxes.
#include "ChannelsBench.h"

class TestChannelsRouting : public QObject
{
    Q_OBJECT

private slots:
    void withoutTheGuardNothingHappens_data();
    void withoutTheGuardNothingHappens();
    void refusedControlsGoBack();
    void theGuardIsDownWhileAHandlerWorks();
    void theGuardIsUpAgainAfterAnError();
    void aSecondControlIsRefusedDuringAWait();
    void sources_data();
    void sources();
    void anOptionWithoutChannelIsNotForwarded();
    void frequencyByEnter_data();
    void frequencyByEnter();
    void frequencyByDoubleClick_data();
    void frequencyByDoubleClick();
    void frequencyGoesToTheChannelsOwnUnit();
    void frequencyOutsideTheRangeShowsTheUnitsBox();
    void theEnterOfABoxDoesNotSendAgain();
    void closedWhileAReplyIsAwaited();
};

// Every handler, by name.
static QMap<QString, std::function<void(frmChannels &, int)>> handlers()
{
    using Window = frmChannels;
    return {
        {QStringLiteral("udAtten_UpClick"), [](Window &w, int i) { w.udAtten_UpClick(i); }},
        {QStringLiteral("udAtten_DownClick"), [](Window &w, int i) { w.udAtten_DownClick(i); }},
        {QStringLiteral("udInputAtten_UpClick"),
         [](Window &w, int i) { w.udInputAtten_UpClick(i); }},
        {QStringLiteral("udInputAtten_DownClick"),
         [](Window &w, int i) { w.udInputAtten_DownClick(i); }},
        {QStringLiteral("udAGCOffset_UpClick"), [](Window &w, int i) { w.udAGCOffset_UpClick(i); }},
        {QStringLiteral("udAGCOffset_DownClick"),
         [](Window &w, int i) { w.udAGCOffset_DownClick(i); }},
        {QStringLiteral("chkChanAGC_Click"), [](Window &w, int i) { w.chkChanAGC_Click(i); }},
        {QStringLiteral("chkChanBYP_Click"), [](Window &w, int i) { w.chkChanBYP_Click(i); }},
        {QStringLiteral("txtChanAtten_KeyUp"),
         [](Window &w, int i) { w.txtChanAtten_KeyUp(i, 13); }},
        {QStringLiteral("txtChanInputAtten_KeyUp"),
         [](Window &w, int i) { w.txtChanInputAtten_KeyUp(i, 13); }},
        {QStringLiteral("txtChanAGCoffset_KeyUp"),
         [](Window &w, int i) { w.txtChanAGCoffset_KeyUp(i, 13); }},
        {QStringLiteral("optPortNum_Click"), [](Window &w, int i) { w.optPortNum_Click(i); }},
        {QStringLiteral("txtChanFreq_KeyUp"), [](Window &w, int i) { w.txtChanFreq_KeyUp(i, 13); }},
        {QStringLiteral("txtChanFreq_DblClick"),
         [](Window &w, int i) { w.txtChanFreq_DblClick(i); }}};
}

void TestChannelsRouting::withoutTheGuardNothingHappens_data()
{
    QTest::addColumn<QString>("handler");
    for (const QString &name : handlers().keys())
        QTest::newRow(qPrintable(name)) << name;
}

void TestChannelsRouting::withoutTheGuardNothingHappens()
{
    QFETCH(QString, handler);
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    for (const char *name : {"txtChanAtten", "txtChanInputAtten", "txtChanAGCoffset"})
        b.box(name)->setText(QStringLiteral("10"));
    app().guard().set(false);
    handlers()[handler](*b.window, 1);
    handlers()[handler](*b.window, 9);
    QCOMPARE(b.sent(), QStringList());
    QVERIFY(!app().guard().isUp());
    // The same with the guard up reaches the unit, so that the above means something.
    app().guard().set(true);
    handlers()[handler](*b.window, 1);
    QVERIFY(!b.sent().isEmpty());
    QVERIFY(app().guard().isUp());
}

void TestChannelsRouting::refusedControlsGoBack()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.bind(2);
    app().guard().set(false);
    b.click(b.check("chkChanAGC"));
    b.click(b.check("chkChanBYP"));
    b.select(2);
    QVERIFY(!b.check("chkChanAGC")->isChecked());
    QVERIFY(!b.check("chkChanBYP")->isChecked());
    QCOMPARE(b.window->ChanIndex(), 1);
    QCOMPARE(b.sent(1) + b.sent(2), QStringList());
}

void TestChannelsRouting::theGuardIsDownWhileAHandlerWorks()
{
    ChannelsBench b;
    const auto device = b.connected(1, ChannelsBench::fullUnit());
    QList<bool> seen;
    connect(device.get(), &clsKeldoX::AttenChange, this,
            [&] { seen.append(app().guard().isUp()); });
    b.up("udAtten");
    QCOMPARE(seen, QList<bool>{false});
    QVERIFY(app().guard().isUp());
}

void TestChannelsRouting::theGuardIsUpAgainAfterAnError()
{
    ChannelsBench b;
    b.fixture.boxes.expectStart(QStringLiteral("Error 9 ("));
    bool up = true;
    b.fixture.boxes.whileOpen([&] { up = app().guard().isUp(); });
    b.window->udAtten_UpClick(9);
    QVERIFY(!up); // nothing is sent from behind an open box
    QVERIFY(app().guard().isUp());
}

void TestChannelsRouting::aSecondControlIsRefusedDuringAWait()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    QTimer::singleShot(0, this, [&] {
        b.click(b.check("chkChanBYP"));
        b.up("udInputAtten");
        b.enter(b.box("txtChanInputAtten"), QStringLiteral("7"));
    });
    b.up("udAtten");
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ATTN 0.5")});
    QVERIFY(!b.check("chkChanBYP")->isChecked());
}

void TestChannelsRouting::sources_data()
{
    QTest::addColumn<QString>("handler");
    QTest::addColumn<QString>("source");
    const auto names = handlers().keys();
    for (const QString &name : names) {
        QString source = QStringLiteral("frmChannels.") + name;
        if (name.startsWith(QStringLiteral("udAGCOffset")))
            source.replace(QStringLiteral("udAGCOffset"), QStringLiteral("udAtten"));
        else if (name == QStringLiteral("txtChanFreq_KeyUp"))
            source = QStringLiteral("frmMain.txtChanFreq_KeyUp");
        else if (name == QStringLiteral("txtChanFreq_DblClick"))
            source = QStringLiteral("frmMain_KeldoX2.txtChanFreq_DblClick");
        QTest::newRow(qPrintable(name)) << name << source;
    }
}

void TestChannelsRouting::sources()
{
    QFETCH(QString, handler);
    QFETCH(QString, source);
    ChannelsBench b;
    b.fixture.boxes.expectStart(QStringLiteral("Error 9 ('Subscript out of range')"),
                                MessageBox::Exclamation);
    handlers()[handler](*b.window, 9);
    QCOMPARE(b.boxesFrom(source), 1);
    QVERIFY(app().guard().isUp());
}

void TestChannelsRouting::anOptionWithoutChannelIsNotForwarded()
{
    ChannelsBench b;
    b.window->optPortNum_Click(0);
    b.window->optPortNum_Click(-1);
    QVERIFY(b.log->events.isEmpty());
}

void TestChannelsRouting::frequencyByEnter_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("command");
    QTest::newRow("number") << "105" << int(Qt::Key_Return) << "*STEP 200";
    QTest::newRow("keypad") << "105" << int(Qt::Key_Enter) << "*STEP 200";
    QTest::newRow("with its unit") << "105 MHz" << int(Qt::Key_Return) << "*STEP 200";
    QTest::newRow("no number") << "abc" << int(Qt::Key_Return) << "";
    QTest::newRow("another key") << "105" << int(Qt::Key_F5) << "";
}

void TestChannelsRouting::frequencyByEnter()
{
    QFETCH(QString, text);
    QFETCH(int, key);
    QFETCH(QString, command);
    ChannelsBench b;
    b.connected(1);
    b.enter(b.box("txtChanFreq"), text, static_cast<Qt::Key>(key));
    QCOMPARE(b.sent().filter(QStringLiteral("*STEP ")),
             command.isEmpty() ? QStringList() : QStringList{command});
    QVERIFY(app().guard().isUp());
}

void TestChannelsRouting::frequencyByDoubleClick_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("command");
    QTest::newRow("shown again") << "102.5"
                                 << "*STEP 100";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("zero") << "0"
                          << "";
    QTest::newRow("below zero") << "-5"
                                << "";
    QTest::newRow("no number") << "abc"
                               << "";
}

void TestChannelsRouting::frequencyByDoubleClick()
{
    QFETCH(QString, text);
    QFETCH(QString, command);
    ChannelsBench b;
    b.connected(1);
    b.box("txtChanFreq")->setText(text);
    QTest::mouseDClick(b.box("txtChanFreq"), Qt::LeftButton);
    QCOMPARE(b.sent().filter(QStringLiteral("*STEP ")),
             command.isEmpty() ? QStringList() : QStringList{command});
    QVERIFY(app().guard().isUp());
}

void TestChannelsRouting::frequencyGoesToTheChannelsOwnUnit()
{
    ChannelsBench b;
    b.connected(1);
    const auto second = b.bind(2);
    QVERIFY(second->Initialize());
    b.row(2).ShowControls();
    b.enter(b.box("txtChanFreq", 2), QStringLiteral("110"));
    QCOMPARE(b.units[2]->step(), 400);
    QCOMPARE(b.units[1]->step(), 0);
    QCOMPARE(b.box("txtChanFreq", 2)->text(), QStringLiteral("110"));
}

void TestChannelsRouting::frequencyOutsideTheRangeShowsTheUnitsBox()
{
    ChannelsBench b;
    b.connected(1);
    b.fixture.boxes.expect(
        QStringLiteral("Cannot set the device to a frequency outside its range."));
    b.enter(b.box("txtChanFreq"), QStringLiteral("999"));
    QVERIFY(b.sent().filter(QStringLiteral("*STEP ")).isEmpty());
    QVERIFY(app().guard().isUp());
}

void TestChannelsRouting::theEnterOfABoxDoesNotSendAgain()
{
    ChannelsBench b;
    b.connected(1);
    QLineEdit *box = b.box("txtChanFreq");
    b.fixture.boxes.expectStart(QStringLiteral("Cannot set the device"));
    b.enter(box, QStringLiteral("999"));
    // The operator closes the box with Enter; it comes up in the frequency box.
    QTest::keyRelease(box, Qt::Key_Return);
    QCOMPARE(b.fixture.boxes.texts().size(), 1);
}

void TestChannelsRouting::closedWhileAReplyIsAwaited()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    QTimer::singleShot(0, this, [&] { b.window->close(); });
    b.up("udAtten");
    QVERIFY(!b.window->isVisible());
    QCOMPARE(b.units[1]->attenuation(), 0.5);
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("0.5"));
    QVERIFY(app().guard().isUp());
}

KELDOX_TEST(TestChannelsRouting)
#include "TestChannelsRouting.moc"
