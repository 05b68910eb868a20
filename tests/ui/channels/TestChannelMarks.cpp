// What the boxes and checks of a channel's row say about their values, and reading the unit again.
#include "ChannelsBench.h"

#include "widgets/EntryMark.h"

class TestChannelMarks : public QObject
{
    Q_OBJECT

private slots:
    void aTypedTextIsNotSent_data();
    void aTypedTextIsNotSent();
    void aFrequencyConverts();
    void anUnconfirmedValueIsMarked_data();
    void anUnconfirmedValueIsMarked();
    void connectingClearsTheMarks();
    void readingAgainAsksWhatIsFitted();
    void readingAgainShowsWhatChanged();
};

namespace {

QString sign(const QWidget *control)
{
    if (const auto *check = qobject_cast<const QCheckBox *>(control))
        return check->text();
    const auto *label = control->findChild<QLabel *>();
    return label && !label->isHidden() ? label->text() : QString();
}

} // namespace

void TestChannelMarks::aTypedTextIsNotSent_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"txtChanFreq", "txtChanAtten", "txtChanInputAtten", "txtChanAGCoffset"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
}

void TestChannelMarks::aTypedTextIsNotSent()
{
    QFETCH(const QString, name);
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.agc = name == QStringLiteral("txtChanAGCoffset");
    b.connected(1, settings);
    QLineEdit *box = b.box(qPrintable(name));
    const QString before = box->text();
    QVERIFY(!before.isEmpty());
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("7,5"));
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(box->text(), QStringLiteral("7,5"));
    QCOMPARE(sign(box), QStringLiteral("*"));
    QCOMPARE(box->accessibleDescription(), QStringLiteral("not sent"));
    QTest::keyClick(box, Qt::Key_Escape);
    QCOMPARE(box->text(), before);
    QCOMPARE(sign(box), QString());
    QCOMPARE(b.sent(), QStringList());
}

void TestChannelMarks::aFrequencyConverts()
{
    ChannelsBench b;
    b.connected(1);
    b.enter(b.box("txtChanFreq"), QStringLiteral("106500 kHz"));
    QCOMPARE(b.sent(), QStringList{QStringLiteral("*STEP 260")});
    QCOMPARE(b.box("txtChanFreq")->text(), QStringLiteral("106.5"));
    b.lines[1]->clearCommands();
    b.enter(b.box("txtChanFreq"), QStringLiteral("107 apples"));
    QCOMPARE(b.sent(), QStringList());
    // A decibel box knows no unit words.
    b.enter(b.box("txtChanAtten"), QStringLiteral("3 MHz"));
    QCOMPARE(b.sent(), QStringList());
    QCOMPARE(sign(b.box("txtChanAtten")), QStringLiteral("*"));
}

void TestChannelMarks::anUnconfirmedValueIsMarked_data()
{
    QTest::addColumn<UnitValue>("value");
    QTest::addColumn<QString>("name");
    QTest::addRow("frequency") << UnitValue::Frequency << QStringLiteral("txtChanFreq");
    QTest::addRow("attenuation") << UnitValue::Attenuation << QStringLiteral("txtChanAtten");
    QTest::addRow("input") << UnitValue::InputAttenuation << QStringLiteral("txtChanInputAtten");
    QTest::addRow("offset") << UnitValue::AGCOffset << QStringLiteral("txtChanAGCoffset");
    QTest::addRow("AGC") << UnitValue::AGC << QStringLiteral("chkChanAGC");
    QTest::addRow("bypass") << UnitValue::Bypass << QStringLiteral("chkChanBYP");
}

void TestChannelMarks::anUnconfirmedValueIsMarked()
{
    QFETCH(const UnitValue, value);
    QFETCH(const QString, name);
    ChannelsBench b;
    const auto unit = b.connected(1, ChannelsBench::fullUnit());
    auto *control = b.find<QWidget>(qPrintable(name), 1);
    emit unit->ConfirmationChange(value, false);
    QVERIFY(sign(control).endsWith(QLatin1Char('?')));
    QCOMPARE(control->accessibleDescription(), QStringLiteral("unconfirmed"));
    emit unit->ConfirmationChange(value, true);
    QCOMPARE(sign(control), QString());
    QCOMPARE(control->accessibleDescription(), QString());
}

void TestChannelMarks::connectingClearsTheMarks()
{
    ChannelsBench b;
    const auto unit = b.connected(1, ChannelsBench::fullUnit());
    for (const UnitValue value : {UnitValue::Frequency, UnitValue::Attenuation, UnitValue::Bypass})
        emit unit->ConfirmationChange(value, false);
    b.select(1);
    for (const char *name : {"txtChanFreq", "txtChanAtten", "chkChanBYP"})
        QCOMPARE(sign(b.find<QWidget>(name, 1)), QString());
}

void TestChannelMarks::readingAgainAsksWhatIsFitted()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.row(1).readAgain();
    QCOMPARE(b.sent(), QStringList({QStringLiteral("*AGC_?"), QStringLiteral("*ATTN?"),
                                    QStringLiteral("INPUT ATTN?"), QStringLiteral("*ACT_?")}));
    b.connected(2, ChannelsBench::unitWith(sim::OptionAttenuator15, false));
    b.row(2).readAgain();
    QCOMPARE(b.sent(2), QStringList{QStringLiteral("*ATTN?")});
    b.row(3).readAgain(); // no unit
}

void TestChannelMarks::readingAgainShowsWhatChanged()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    b.units[1]->answer("*ATTN 7.5");
    b.units[1]->answer("INPUT ATTN 4");
    b.units[1]->answer("*ACT_ 1");
    b.row(1).readAgain();
    QCOMPARE(b.box("txtChanAtten")->text(), QStringLiteral("7.5"));
    QCOMPARE(b.box("txtChanInputAtten")->text(), QStringLiteral("4"));
    QVERIFY(b.check("chkChanBYP")->isChecked());
}

KELDOX_TEST(TestChannelMarks)
#include "TestChannelMarks.moc"
