// A unit that goes, or that another one takes the place of: nothing of it stays in the row, and the
// next connection reads everything anew.
#include "ChannelsBench.h"

#include <QTimer>

class TestUnitGone : public QObject
{
    Q_OBJECT

private slots:
    void unpluggedDuringASetting_data();
    void unpluggedDuringASetting();
    void unpluggedWhileItIsConnected_data();
    void unpluggedWhileItIsConnected();
    void brokenOffWhileItIsConnected();
    void theNextConnectionReadsTheOptionsAnew();
    void garbledStepsAreReadAgain_data();
    void garbledStepsAreReadAgain();
    void goodStepsAreReadOnce();
    void connectingEmptiesTheRowFirst();
    void anUnreadValueIsNotMadeUp_data();
    void anUnreadValueIsNotMadeUp();
    void theArrowsDoNotCountFromNothing();
};

namespace {

const char *const boxNames[] = {"txtChanFreq", "txtChanAtten", "txtChanInputAtten",
                                "txtChanAGCoffset"};

sim::UnitSettings busyUnit()
{
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.step = 260;
    settings.attenuation = 12.5;
    settings.inputAttenuation = 3;
    settings.bypass = true;
    return settings;
}

void nothingStays(const ChannelsBench &b)
{
    for (const char *name : boxNames)
        QVERIFY2(b.box(name)->text().isEmpty(), name);
    QVERIFY(!b.check("chkChanAGC")->isChecked());
    QVERIFY(!b.check("chkChanBYP")->isChecked());
    QCOMPARE(b.enabledNames(), QStringLiteral("optPortNum"));
    QVERIFY(b.find<QRadioButton>("optPortNum", 1)->isVisible());
}

// The unit's line, with one command answered otherwise.
void answer(ChannelsBench &b, const std::string &command, const std::string &reply)
{
    const auto unit = b.units[1];
    b.lines[1]->setResponder([unit, command, reply](const std::string &asked) {
        if (asked == command)
            return std::optional<std::string>(reply);
        auto told = unit->answer(asked);
        return told ? told : sim::SimulatedUnit::answerForTheLine(asked);
    });
}

} // namespace

void TestUnitGone::unpluggedDuringASetting_data()
{
    QTest::addColumn<QString>("control");
    for (const char *name : {"txtChanFreq", "txtChanAtten", "txtChanInputAtten", "chkChanAGC",
                             "chkChanBYP", "udAtten", "udInputAtten"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
}

void TestUnitGone::unpluggedDuringASetting()
{
    QFETCH(const QString, control);
    ChannelsBench b;
    b.connected(1, busyUnit());
    b.fixture.boxes.acceptAll();
    b.lines[1]->setFault(sim::Fault::Unplug);
    const QByteArray name = control.toLatin1();
    if (control.startsWith(QStringLiteral("txt")))
        b.enter(b.box(name.constData()), QStringLiteral("105"));
    else if (control.startsWith(QStringLiteral("chk")))
        b.click(b.check(name.constData()));
    else
        b.up(name.constData());
    nothingStays(b);
    QVERIFY(app().guard().isUp());
}

void TestUnitGone::unpluggedWhileItIsConnected_data()
{
    QTest::addColumn<QByteArray>("at");
    for (const char *command : {"*ID?", "*REVISION?", "*AOPT?", "*ACT_?", "*MXAT?", "*ATT STEP?",
                                "*AGC_?", "INPUT ATTN?", "*STEP?"})
        QTest::addRow("%s", command) << QByteArray(command);
}

void TestUnitGone::unpluggedWhileItIsConnected()
{
    QFETCH(const QByteArray, at);
    ChannelsBench b;
    b.bind(1, busyUnit());
    b.fixture.boxes.acceptAll();
    b.lines[1]->setFault(sim::Fault::Unplug, at.toStdString());
    b.select(1);
    nothingStays(b);
    QCOMPARE(b.panel(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(b.panel(2), QString());
    QCOMPARE(b.mainWindow->panels.value(1), QStringLiteral("NOT CONNECTED"));
}

void TestUnitGone::brokenOffWhileItIsConnected()
{
    ChannelsBench b;
    const auto device = b.bind(1, busyUnit());
    b.fixture.boxes.acceptAll();
    b.lines[1]->setFault(sim::Fault::Silence, "*MXAT?");
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (b.sent().contains(QStringLiteral("*MXAT?")))
            device->commPort()->ClosePort();
    });
    timer.start(10);
    b.select(1);
    timer.stop();
    nothingStays(b);
    b.lines[1]->setFault(sim::Fault::None);
    b.lines[1]->clearCommands();
    b.select(1);
    QVERIFY(b.sent().contains(QStringLiteral("*MXAT?")));
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("12.5"));
    b.up("udAtten");
    QCOMPARE(b.sent().last(), QStringLiteral("*ATTN 13"));
}

void TestUnitGone::theNextConnectionReadsTheOptionsAnew()
{
    ChannelsBench b;
    b.connected(1, busyUnit());
    b.fixture.boxes.acceptAll();
    b.lines[1]->setFault(sim::Fault::Unplug);
    b.enter(b.box("txtChanFreq"), QStringLiteral("105"));
    nothingStays(b);
    const auto line = std::make_shared<sim::SimulatedLine>();
    sim::UnitSettings other = busyUnit();
    other.attenuationStep = 2;
    other.attenuation = 12;
    line->addUnit(std::make_shared<sim::SimulatedUnit>(other));
    b.lines[1] = line;
    b.fixture.plug(1, line->device());
    b.select(1);
    QVERIFY(b.sent().contains(QStringLiteral("*MXAT?")));
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("12"));
    b.up("udAtten");
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("14"));
}

void TestUnitGone::garbledStepsAreReadAgain_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addRow("maximum") << QByteArray("*MXAT?");
    QTest::addRow("step") << QByteArray("*ATT STEP? ");
}

void TestUnitGone::garbledStepsAreReadAgain()
{
    QFETCH(const QByteArray, command);
    ChannelsBench b;
    b.bind(1, busyUnit());
    b.fixture.boxes.acceptAll();
    answer(b, command.toStdString(), "~}#@q%!x$");
    b.select(1);
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("12.5"));
    answer(b, "NO COMMAND", "");
    b.select(1);
    b.lines[1]->clearCommands();
    b.up("udAtten");
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*ATTN 13")});
}

void TestUnitGone::goodStepsAreReadOnce()
{
    ChannelsBench b;
    b.connected(1, busyUnit());
    b.select(1);
    QVERIFY(b.sent().contains(QStringLiteral("*ID?")));
    QVERIFY(!b.sent().contains(QStringLiteral("*MXAT?")));
    QVERIFY(!b.sent().contains(QStringLiteral("*AOPT?")));
    QVERIFY(b.visibleNames().contains(QStringLiteral("chkChanBYP")));
}

void TestUnitGone::connectingEmptiesTheRowFirst()
{
    ChannelsBench b;
    b.connected(1, busyUnit());
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("106.5"));
    QCOMPARE(b.panel(2), QStringLiteral("KELDO-X REV 3.17"));
    bool looked = false;
    QTimer::singleShot(0, b.window.get(), [&] {
        looked = true;
        nothingStays(b);
        QCOMPARE(b.panel(2), QString());
    });
    b.select(1);
    QVERIFY(looked);
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("106.5"));
    QCOMPARE(b.box("txtChanInputAtten")->text(), QStringLiteral("3"));
    QVERIFY(b.check("chkChanBYP")->isChecked());
    QCOMPARE(b.mainWindow->inputAttenuation, std::optional(3.0));
}

void TestUnitGone::anUnreadValueIsNotMadeUp_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QString>("box");
    QTest::addRow("step") << QByteArray("*STEP?") << QStringLiteral("txtChanFreq");
    QTest::addRow("start") << QByteArray("*START FREQ?") << QStringLiteral("txtChanFreq");
    QTest::addRow("spacing") << QByteArray("*CHAN SPACE?") << QStringLiteral("txtChanFreq");
    QTest::addRow("attenuation") << QByteArray("*ATTN?") << QStringLiteral("txtChanAtten");
    QTest::addRow("input") << QByteArray("INPUT ATTN?") << QStringLiteral("txtChanInputAtten");
}

void TestUnitGone::anUnreadValueIsNotMadeUp()
{
    QFETCH(const QByteArray, query);
    QFETCH(const QString, box);
    ChannelsBench b;
    b.bind(1, busyUnit());
    b.fixture.boxes.acceptAll();
    answer(b, query.toStdString(), "~}#@q%!x$");
    b.select(1);
    QCOMPARE(b.box(qPrintable(box))->text(), QString());
    QCOMPARE(b.mainWindow->inputAttenuation.has_value(), query != "INPUT ATTN?");
}

void TestUnitGone::theArrowsDoNotCountFromNothing()
{
    ChannelsBench b;
    b.bind(1, busyUnit());
    b.fixture.boxes.acceptAll();
    answer(b, "*ATTN?", "~}#@q%!x$");
    b.select(1);
    b.lines[1]->clearCommands();
    b.up("udAtten");
    QCOMPARE(b.sent(), QStringList());
}

KELDOX_TEST(TestUnitGone)
#include "TestUnitGone.moc"
