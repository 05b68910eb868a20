// While one exchange of a row waits for its reply, nothing else goes on any line, and the rows show
// afterwards what is true.
#include "ChannelsBench.h"

#include <QTimer>

class TestOneExchangeOfARow : public QObject
{
    Q_OBJECT

private slots:
    void nothingElseIsSentWhileAnExchangeWaits_data();
    void nothingElseIsSentWhileAnExchangeWaits();
};

using Deed = std::function<void(ChannelsBench &)>;
Q_DECLARE_METATYPE(Deed)

void TestOneExchangeOfARow::nothingElseIsSentWhileAnExchangeWaits_data()
{
    QTest::addColumn<Deed>("deed");
    const auto row = [](const char *name, Deed deed) { QTest::addRow("%s", name) << deed; };
    const QString typed = QStringLiteral("7");
    for (const char *name : {"txtChanFreq", "txtChanAtten", "txtChanInputAtten"}) {
        row(name, [name, typed](ChannelsBench &b) { b.enter(b.box(name), typed); });
        row(qPrintable(QStringLiteral("%1 twice").arg(QLatin1String(name))),
            [name](ChannelsBench &b) { QTest::mouseDClick(b.box(name), Qt::LeftButton); });
    }
    for (const char *name : {"udAtten", "udInputAtten"})
        row(name, [name](ChannelsBench &b) { b.up(name); });
    for (const char *name : {"chkChanAGC", "chkChanBYP"})
        row(name, [name](ChannelsBench &b) { b.click(b.check(name)); });
    row("the same channel", [](ChannelsBench &b) { b.select(1); });
    row("another channel", [](ChannelsBench &b) { b.select(2); });
    row("Escape", [](ChannelsBench &b) { QTest::keyClick(b.window.get(), Qt::Key_Escape); });
}

void TestOneExchangeOfARow::nothingElseIsSentWhileAnExchangeWaits()
{
    QFETCH(const Deed, deed);
    ChannelsBench b;
    b.bind(2);
    b.connected(1, ChannelsBench::fullUnit());
    b.lines[1]->setLateBy(std::chrono::milliseconds(300));
    b.lines[1]->setFault(sim::Fault::LateReply, "*STEP", 1);
    bool insideTheWait = false;
    QTimer::singleShot(0, b.window.get(), [&] {
        deed(b);
        insideTheWait = !app().guard().isUp();
    });
    b.enter(b.box("txtChanFreq"), QStringLiteral("105"));
    QVERIFY(insideTheWait);
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*STEP 200")});
    QCOMPARE(b.sent(2), QStringList());
    QCOMPARE(b.window->ChanIndex(), 1);
    QVERIFY(!b.check("chkChanAGC")->isChecked());
    QVERIFY(!b.check("chkChanBYP")->isChecked());
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("105"));
    // What was typed and kept out stands there still, and says that it was not sent.
    for (const char *name : {"txtChanAtten", "txtChanInputAtten"})
        QCOMPARE(b.box(name)->accessibleDescription(), b.box(name)->text() == QStringLiteral("0")
                                                           ? QString()
                                                           : QStringLiteral("not sent"));
    for (const char *name : {"udAtten", "udInputAtten"})
        QVERIFY(b.arrows(name)->isEnabled());
    QVERIFY(app().guard().isUp());
}

KELDOX_TEST(TestOneExchangeOfARow)
#include "TestOneExchangeOfARow.moc"
