// What the entry boxes of the main window say about their text: not sent, not confirmed.
#include "PresetBench.h"

#include "widgets/EntryMark.h"

class TestEntryMarks : public QObject
{
    Q_OBJECT

private slots:
    void aTypedTextIsNotSent_data();
    void aTypedTextIsNotSent();
    void theSameValueIsNotMarked();
    void escapePutsTheUnitsValueBack();
    void whatIsSentIsUnmarked();
    void aRefusedFrequencyStaysMarked();
    void unitWordsConvert_data();
    void unitWordsConvert();
    void otherWordsAreIgnored_data();
    void otherWordsAreIgnored();
    void aDoubleClickConvertsToo();
    void draggingIsNotSent();
    void fineTuningIsMarked();
    void anUnconfirmedValueIsMarked_data();
    void anUnconfirmedValueIsMarked();
    void theInputAttenuationLightIsMarked();
    void anotherUnitStartsWithoutMarks();
    void aPresetStoresWhatIsTyped();
};

namespace {

QString sign(const QLineEdit *box)
{
    const auto *label = box->findChild<QLabel *>();
    return label && !label->isHidden() ? label->text() : QString();
}

} // namespace

void TestEntryMarks::aTypedTextIsNotSent_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"101", "250,", "146,5", "999", "10", "", "101 apples"})
        QTest::addRow("%s", text) << QString::fromLatin1(text);
}

void TestEntryMarks::aTypedTextIsNotSent()
{
    QFETCH(const QString, text);
    ConnectedBench bench;
    const QString tip = bench.frequency()->toolTip();
    QCOMPARE(sign(bench.frequency()), QString());
    bench.type(text);
    if (text.isEmpty())
        QTest::keyClick(bench.frequency(), Qt::Key_Delete);
    QCOMPARE(sign(bench.frequency()), QStringLiteral("*"));
    QCOMPARE(bench.frequency()->accessibleDescription(), QStringLiteral("not sent"));
    QVERIFY(bench.frequency()->toolTip().startsWith(QStringLiteral("not sent")));
    QCOMPARE(bench.frequency()->text(), text);
    QTest::keyClick(bench.frequency(), Qt::Key_Escape);
    QCOMPARE(sign(bench.frequency()), QString());
    QCOMPARE(bench.frequency()->accessibleDescription(), QString());
    QCOMPARE(bench.frequency()->toolTip(), tip);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("100"));
    QCOMPARE(bench.sent(), QStringList());
}

void TestEntryMarks::theSameValueIsNotMarked()
{
    ConnectedBench bench;
    for (const char *text : {"100.0", " 100 ", "100 MHz", "100000 kHz"}) {
        bench.type(QString::fromLatin1(text));
        QCOMPARE(sign(bench.frequency()), QString());
    }
}

void TestEntryMarks::escapePutsTheUnitsValueBack()
{
    ConnectedBench bench;
    bench.enter(QStringLiteral("105"));
    bench.type(QStringLiteral("106.5.1"));
    QTest::keyClick(bench.frequency(), Qt::Key_Return); // ignored
    QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5.1"));
    QCOMPARE(sign(bench.frequency()), QStringLiteral("*"));
    QTest::keyClick(bench.frequency(), Qt::Key_Escape);
    QCOMPARE(bench.frequency()->text(), QStringLiteral("105"));
}

void TestEntryMarks::whatIsSentIsUnmarked()
{
    ConnectedBench bench;
    QString duringTheWait;
    bench.whileWaiting([&] { duringTheWait = sign(bench.frequency()); });
    bench.enter(QStringLiteral("105"));
    QCOMPARE(duringTheWait, QStringLiteral("*"));
    QCOMPARE(sign(bench.frequency()), QString());
}

void TestEntryMarks::aRefusedFrequencyStaysMarked()
{
    ConnectedBench bench;
    bench.boxes().expect(QStringLiteral("Cannot set the device to a frequency outside its range."));
    bench.enter(QStringLiteral("999"));
    QCOMPARE(bench.frequency()->text(), QStringLiteral("999"));
    QCOMPARE(bench.frequency()->accessibleDescription(), QStringLiteral("not sent"));
}

void TestEntryMarks::unitWordsConvert_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"106.5MHz", "106.5 mhz", "106500 kHz", "106500KHZ", "106500000 Hz", "0.1065 GHz"})
        QTest::addRow("%s", text) << QString::fromLatin1(text);
}

void TestEntryMarks::unitWordsConvert()
{
    QFETCH(const QString, text);
    ConnectedBench bench;
    bench.enter(text);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 260")});
    QCOMPARE(bench.frequency()->text(), QStringLiteral("106.5"));
}

void TestEntryMarks::otherWordsAreIgnored_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"106.5 apples", "106.5 dB", "106.5 k", "106,5", "106,5 MHz", "106.5.1"})
        QTest::addRow("%s", text) << QString::fromLatin1(text);
}

void TestEntryMarks::otherWordsAreIgnored()
{
    QFETCH(const QString, text);
    ConnectedBench bench;
    bench.enter(text);
    QCOMPARE(bench.sent(), QStringList());
    QCOMPARE(bench.frequency()->text(), text);
}

void TestEntryMarks::aDoubleClickConvertsToo()
{
    ConnectedBench bench;
    bench.type(QStringLiteral("106500 kHz"));
    QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 260")});
    bench.type(QStringLiteral("105,5"));
    QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList());
    bench.boxes().expect(QStringLiteral("Cannot set the device to a frequency outside its range."));
    bench.type(QStringLiteral("106.5 kHz"));
    QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList());
}

void TestEntryMarks::draggingIsNotSent()
{
    ConnectedBench bench;
    const QPoint thumb = thumbOf(*bench.slider());
    QTest::mousePress(bench.slider(), Qt::LeftButton, {}, thumb);
    dragTo(*bench.slider(), thumb + QPoint(60, 0));
    QCOMPARE(sign(bench.frequency()), QStringLiteral("*"));
    QTest::mouseRelease(bench.slider(), Qt::LeftButton, {}, thumb + QPoint(60, 0));
    QCOMPARE(sign(bench.frequency()), QString());
}

void TestEntryMarks::fineTuningIsMarked()
{
    ConnectedBench bench;
    auto *box = bench.find<QLineEdit>("txtPelltrim");
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("77"));
    QCOMPARE(sign(box), QStringLiteral("*"));
    QTest::keyClick(box, Qt::Key_Escape);
    QCOMPARE(box->text(), QStringLiteral("128"));
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("77"));
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(sign(box), QString());
    QCOMPARE(bench.simulated->fineTuning(), 77);
}

void TestEntryMarks::anUnconfirmedValueIsMarked_data()
{
    QTest::addColumn<UnitValue>("value");
    QTest::addColumn<QString>("control");
    QTest::addRow("frequency") << UnitValue::Frequency << QStringLiteral("txtCurrentFreq");
    QTest::addRow("input limiting")
        << UnitValue::InputLimiting << QStringLiteral("FrameInputLimiting");
    QTest::addRow("fine tuning") << UnitValue::Pelltrim << QStringLiteral("txtPelltrim");
    QTest::addRow("calibrated") << UnitValue::CalMode << QStringLiteral("chkPelltrimCalMode");
}

void TestEntryMarks::anUnconfirmedValueIsMarked()
{
    QFETCH(const UnitValue, value);
    QFETCH(const QString, control);
    ConnectedBench bench;
    auto *marked = bench.find<QWidget>(qPrintable(control));
    const auto caption = [&] {
        if (auto *box = qobject_cast<QLineEdit *>(marked))
            return sign(box);
        const char *text = qobject_cast<QGroupBox *>(marked) ? "title" : "text";
        return marked->property(text).toString();
    };
    const QString before = caption();
    const QString tip = marked->toolTip();
    emit bench.unit->ConfirmationChange(value, false);
    QVERIFY(caption().endsWith(QLatin1Char('?')));
    QCOMPARE(marked->accessibleDescription(), QStringLiteral("unconfirmed"));
    QCOMPARE(marked->toolTip(),
             QStringLiteral("not confirmed by the unit: press F5 to read it again"));
    emit bench.unit->ConfirmationChange(value, true);
    QCOMPARE(caption(), before);
    QCOMPARE(marked->accessibleDescription(), QString());
    QCOMPARE(marked->toolTip(), tip);
}

void TestEntryMarks::theInputAttenuationLightIsMarked()
{
    ConnectedBench bench;
    auto *light = bench.find<IndicatorLight>("ShapeOneBitLight");
    bench.unit->setInputAtten(10);
    QCOMPARE(light->accessibleDescription(), QStringLiteral("10 dB"));
    bench.reply("INPUT ATTN 20", "?");
    bench.boxes().expectStart(QStringLiteral("The device did not respond correctly"));
    bench.unit->setInputAtten(20);
    QCOMPARE(light->accessibleDescription(), QStringLiteral("10 dB, unconfirmed"));
    QVERIFY(light->toolTip().contains(QStringLiteral("press F5 to read it again")));
    bench.unit->InputAtten();
    QCOMPARE(light->accessibleDescription(), QStringLiteral("10 dB"));
}

void TestEntryMarks::anotherUnitStartsWithoutMarks()
{
    ConnectedBench bench;
    for (const UnitValue value :
         {UnitValue::Frequency, UnitValue::InputLimiting, UnitValue::InputAttenuation,
          UnitValue::Pelltrim, UnitValue::CalMode})
        emit bench.unit->ConfirmationChange(value, false);
    bench.type(QStringLiteral("101"));
    QCOMPARE(sign(bench.frequency()), QStringLiteral("*?"));
    const auto before = bench.unit;
    bench.window->setDevice(makeUnit());
    emit before->ConfirmationChange(UnitValue::Frequency, false); // is no longer heard
    QCOMPARE(sign(bench.frequency()), QString());
    QCOMPARE(sign(bench.find<QLineEdit>("txtPelltrim")), QString());
    QCOMPARE(bench.find<QGroupBox>("FrameInputLimiting")->title(),
             QStringLiteral("Input Limiting"));
    QVERIFY(bench.find<IndicatorLight>("ShapeOneBitLight")->isConfirmed());
    QCOMPARE(bench.find<QCheckBox>("chkPelltrimCalMode")->text(), QStringLiteral("Calibrated"));
}

void TestEntryMarks::aPresetStoresWhatIsTyped()
{
    ConnectedBench bench;
    bench.type(QStringLiteral("107250 kHz"));
    QTest::mouseClick(bench.find<QPushButton>("cmdSetPresets"), Qt::LeftButton);
    QTest::mouseClick(bench.find<QPushButton>("cmdSetDUTFreq_4"), Qt::LeftButton);
    QCOMPARE(app().presets[4]->value(), 107.25);
    store(4, QString()); // the next test starts without it
    QCOMPARE(bench.sent(), QStringList());
    QCOMPARE(sign(bench.frequency()), QStringLiteral("*"));
}

KELDOX_TEST(TestEntryMarks)
#include "TestEntryMarks.moc"
