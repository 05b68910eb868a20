// The boxes and arrows of a channel's row, and what they send to the unit.
#include "ChannelsBench.h"

class TestChannelEdits : public QObject
{
    Q_OBJECT

private slots:
    void enterSendsABox_data();
    void enterSendsABox();
    void otherKeysSendNothing();
    void textThatIsNoNumberSendsNothing_data();
    void textThatIsNoNumberSendsNothing();
    void enterWithoutItsKeyDownSendsNothing();
    void keyCodesOfTheBinding();
    void arrows_data();
    void arrows();
    void arrowsStayDisabledUntilTheValueIsSent();
    void arrowsFromTheKeyboardKeepTheFocus();
    void arrowsOfARowDisabledMeanwhileStayDisabled();
    void fractionsReachTheBounds();
    void inputAttenuationStepsByTheOutputStep();
};

static const sim::UnitSettings full = ChannelsBench::fullUnit();

static sim::UnitSettings withAGC()
{
    sim::UnitSettings settings = full;
    settings.agc = true;
    return settings;
}

void TestChannelEdits::enterSendsABox_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<bool>("agc");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("command");
    QTest::newRow("attenuation") << "txtChanAtten" << false << "12.5" << int(Qt::Key_Return)
                                 << "*ATTN 12.5";
    QTest::newRow("keypad") << "txtChanAtten" << false << "3" << int(Qt::Key_Enter) << "*ATTN 3";
    QTest::newRow("blanks around it")
        << "txtChanAtten" << false << " 3 " << int(Qt::Key_Return) << "*ATTN 3";
    QTest::newRow("input attenuation")
        << "txtChanInputAtten" << false << "31.5" << int(Qt::Key_Return) << "INPUT ATTN 31.5";
    QTest::newRow("AGC offset") << "txtChanAGCoffset" << true << "-1.5" << int(Qt::Key_Return)
                                << "!AOFF -1.5";
    QTest::newRow("positive AGC offset")
        << "txtChanAGCoffset" << true << "3" << int(Qt::Key_Return) << "!AOFF 3";
}

void TestChannelEdits::enterSendsABox()
{
    QFETCH(QString, box);
    QFETCH(bool, agc);
    QFETCH(QString, text);
    QFETCH(int, key);
    QFETCH(QString, command);
    ChannelsBench b;
    b.connected(1, agc ? withAGC() : full);
    b.enter(b.box(qPrintable(box)), text, static_cast<Qt::Key>(key));
    QCOMPARE(b.sent(), QStringList{command});
    QVERIFY(app().guard().isUp());
}

void TestChannelEdits::otherKeysSendNothing()
{
    ChannelsBench b;
    b.connected(1, full);
    b.enter(b.box("txtChanAtten"), QStringLiteral("12"), Qt::Key_F2);
    b.enter(b.box("txtChanInputAtten"), QStringLiteral("12"), Qt::Key_Tab);
    QCOMPARE(b.sent(), QStringList());
}

void TestChannelEdits::textThatIsNoNumberSendsNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("word") << "abc";
    QTest::newRow("empty") << "";
    QTest::newRow("number and more") << "12x";
    QTest::newRow("comma") << "1,5";
}

void TestChannelEdits::textThatIsNoNumberSendsNothing()
{
    QFETCH(QString, text);
    ChannelsBench b;
    b.connected(1, full);
    for (const char *name : {"txtChanAtten", "txtChanInputAtten"}) {
        b.box(name)->clear();
        b.enter(b.box(name), text);
    }
    QCOMPARE(b.sent(), QStringList());
}

// The Enter that closes a message box comes up in the box that then has the focus.
void TestChannelEdits::enterWithoutItsKeyDownSendsNothing()
{
    ChannelsBench b;
    b.connected(1, full);
    QLineEdit *box = b.box("txtChanAtten");
    box->setText(QStringLiteral("9"));
    box->setFocus();
    QTest::keyRelease(box, Qt::Key_Return);
    QCOMPARE(b.sent(), QStringList());
    // Down in one box and up in another counts in neither.
    QTest::keyPress(box, Qt::Key_Return);
    b.box("txtChanInputAtten")->setFocus();
    QTest::keyRelease(b.box("txtChanInputAtten"), Qt::Key_Return);
    box->setFocus();
    QTest::keyRelease(box, Qt::Key_Return);
    QCOMPARE(b.sent(), QStringList());
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ATTN 9")});
}

void TestChannelEdits::keyCodesOfTheBinding()
{
    ChannelsBench b;
    b.connected(1, full);
    b.box("txtChanAtten")->setText(QStringLiteral("5"));
    b.row(1).txtChanAttenKeyUp(65);
    QCOMPARE(b.sent(), QStringList());
    b.row(1).txtChanAttenKeyUp(13);
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ATTN 5")});
}

void TestChannelEdits::arrows_data()
{
    QTest::addColumn<QString>("arrows");
    QTest::addColumn<bool>("up");
    QTest::addColumn<bool>("agc");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("command");
    const QString atten = QStringLiteral("udAtten");
    const QString attenBox = QStringLiteral("txtChanAtten");
    QTest::newRow("up") << atten << true << false << attenBox << "10"
                        << "*ATTN 10.5";
    QTest::newRow("down") << atten << false << false << attenBox << "10"
                          << "*ATTN 9.5";
    QTest::newRow("down to 0") << atten << false << false << attenBox << "0.5"
                               << "*ATTN 0";
    QTest::newRow("0 and down") << atten << false << false << attenBox << "0"
                                << "";
    QTest::newRow("up to the maximum") << atten << true << false << attenBox << "49.5"
                                       << "*ATTN 50";
    QTest::newRow("maximum and up") << atten << true << false << attenBox << "50"
                                    << "";
    QTest::newRow("from an empty box") << atten << true << false << attenBox << ""
                                       << "*ATTN 0.5";

    const QString input = QStringLiteral("udInputAtten");
    const QString inputBox = QStringLiteral("txtChanInputAtten");
    QTest::newRow("input up") << input << true << false << inputBox << "31"
                              << "INPUT ATTN 31.5";
    QTest::newRow("input at 31.5") << input << true << false << inputBox << "31.5"
                                   << "";
    QTest::newRow("input down") << input << false << false << inputBox << "0.5"
                                << "INPUT ATTN 0";
    QTest::newRow("input at 0") << input << false << false << inputBox << "0"
                                << "";

    const QString offset = QStringLiteral("udAGCOffset");
    const QString offsetBox = QStringLiteral("txtChanAGCoffset");
    QTest::newRow("offset below 0") << offset << false << true << offsetBox << "0"
                                    << "!AOFF -0.5";
    QTest::newRow("offset at minus the maximum") << offset << false << true << offsetBox << "-49.5"
                                                 << "!AOFF -50";
    QTest::newRow("offset not below it") << offset << false << true << offsetBox << "-50"
                                         << "";
    QTest::newRow("offset up") << offset << true << true << offsetBox << "49.5"
                               << "!AOFF 50";
    QTest::newRow("offset at the maximum") << offset << true << true << offsetBox << "50"
                                           << "";
}

void TestChannelEdits::arrows()
{
    QFETCH(QString, arrows);
    QFETCH(bool, up);
    QFETCH(bool, agc);
    QFETCH(QString, box);
    QFETCH(QString, before);
    QFETCH(QString, command);
    ChannelsBench b;
    b.connected(1, agc ? withAGC() : full);
    b.box(qPrintable(box))->setText(before);
    if (up)
        b.up(qPrintable(arrows));
    else
        b.down(qPrintable(arrows));
    QCOMPARE(b.sent(), command.isEmpty() ? QStringList() : QStringList{command});
    QVERIFY(b.arrows(qPrintable(arrows))->isEnabled());
}

void TestChannelEdits::arrowsStayDisabledUntilTheValueIsSent()
{
    ChannelsBench b;
    const auto device = b.connected(1, full);
    int seen = 0;
    bool enabled = true;
    connect(device.get(), &clsKeldoX::AttenChange, this, [&] {
        ++seen;
        enabled = b.arrows("udAtten")->isEnabled();
    });
    // A second click while the first is under way does nothing.
    QTimer::singleShot(0, this, [&] { b.up("udAtten"); });
    b.up("udAtten");
    QCOMPARE(seen, 1);
    QVERIFY(!enabled);
    QVERIFY(b.arrows("udAtten")->isEnabled());
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ATTN 0.5")});
}

void TestChannelEdits::arrowsFromTheKeyboardKeepTheFocus()
{
    ChannelsBench b;
    b.connected(1, full);
    UpDown *arrows = b.arrows("udAtten");
    arrows->setFocus();
    QTest::keyClick(arrows, Qt::Key_Up);
    QVERIFY(arrows->hasFocus());
    QTest::keyClick(arrows, Qt::Key_Up);
    QTest::keyClick(arrows, Qt::Key_Down);
    QCOMPARE(b.sent(), QStringList({QStringLiteral("*ATTN 0.5"), QStringLiteral("*ATTN 1"),
                                    QStringLiteral("*ATTN 0.5")}));
    QVERIFY(arrows->hasFocus());
}

void TestChannelEdits::arrowsOfARowDisabledMeanwhileStayDisabled()
{
    ChannelsBench b;
    const auto device = b.connected(1, full);
    connect(device.get(), &clsKeldoX::AttenChange, this, [&] { b.row(1).DisableControls(); });
    b.up("udAtten");
    QVERIFY(!b.arrows("udAtten")->isEnabled());
}

void TestChannelEdits::fractionsReachTheBounds()
{
    ChannelsBench b;
    sim::UnitSettings settings = withAGC();
    settings.attenuationStep = 2.2;
    settings.maxAttenuation = 1;
    b.connected(1, settings);
    b.box("txtChanAGCoffset")->setText(QStringLiteral("1.2"));
    b.down("udAGCOffset"); // 1.2 - 2.2 is a little less than -1 where it is not rounded
    QCOMPARE(b.sent(), QStringList{QStringLiteral("!AOFF -1")});
}

void TestChannelEdits::inputAttenuationStepsByTheOutputStep()
{
    ChannelsBench b;
    sim::UnitSettings settings = full;
    settings.attenuationStep = 2;
    b.connected(1, settings);
    b.box("txtChanInputAtten")->setText(QStringLiteral("10"));
    b.up("udInputAtten");
    QCOMPARE(b.sent(), QStringList{QStringLiteral("INPUT ATTN 12")});
}

KELDOX_TEST(TestChannelEdits)
#include "TestChannelEdits.moc"
