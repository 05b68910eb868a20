// A preset by itself: its button, its display, and the user's settings that keep it.
#include "PresetBench.h"

class TestPresetObject : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void aNewPresetIsUnset();
    void aButtonGivesItsIndexFromItsControlArray();
    void theDisplayIsAButtonOrABoxAndNothingElse();
    void valuesAreShownWithTheirBlank_data();
    void valuesAreShownWithTheirBlank();
    void refreshShowsTheValueAgain();
    void settingsKeepTheValueUnderTheKeyWithItsBlank();
    void storedTextThatIsNoNumberLoadsAsZero_data();
    void storedTextThatIsNoNumberLoadsAsZero();
    void enablingDoesNotLookAtTheValue();
    void setModeColoursTheButton();
    void anAmpersandInACaptionIsShown();
    void theObjectsOwnMessage();
};

void TestPresetObject::init()
{
    for (int index = 4; index <= 7; ++index)
        store(index, QString());
}

void TestPresetObject::aNewPresetIsUnset()
{
    const clsPresetButton preset;
    QCOMPARE(preset.Index(), std::int16_t{-1});
    QCOMPARE(preset.value(), 0.0);
    QCOMPARE(preset.DisplayText(), QString());
    QVERIFY(!preset.SetMode());
    QVERIFY(!preset.DisplayCanBeEnabled());
    QVERIFY(!preset.Enabled());
    QVERIFY(!preset.Button());
    QVERIFY(!preset.Display());
}

void TestPresetObject::aButtonGivesItsIndexFromItsControlArray()
{
    QPushButton button;
    button.setObjectName(QStringLiteral("cmdSetDUTFreq_6"));
    clsPresetButton preset;
    preset.setButton(&button);
    QCOMPARE(preset.Index(), std::int16_t{6});
    preset.setIndex(7);
    QCOMPARE(preset.Index(), std::int16_t{7});
    preset.setDisplayCanBeEnabled(true);
    QVERIFY(preset.DisplayCanBeEnabled());
}

void TestPresetObject::theDisplayIsAButtonOrABoxAndNothingElse()
{
    QPushButton button;
    QLineEdit box;
    QLabel label(QStringLiteral("as it was"));
    for (QWidget *display : std::initializer_list<QWidget *>{&button, &box, &label}) {
        clsPresetButton preset;
        preset.setDisplay(display);
        preset.setDisplayText(QStringLiteral("146 MHz"));
        QCOMPARE(preset.DisplayText(), QStringLiteral("146 MHz"));
    }
    QCOMPARE(button.text(), QStringLiteral("146 MHz"));
    QCOMPARE(box.text(), QStringLiteral("146 MHz"));
    QCOMPARE(label.text(), QStringLiteral("as it was"));
    clsPresetButton preset;
    preset.setDisplay(&box);
    preset.setDisplayText(QStringLiteral("x"));
    preset.Clear();
    QCOMPARE(box.text(), QString());
    QCOMPARE(preset.DisplayText(), QString());
}

void TestPresetObject::valuesAreShownWithTheirBlank_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::addRow("set") << 145.5 << QStringLiteral(" 145.5");
    QTest::addRow("small") << 0.5 << QStringLiteral(" 0.5");
    QTest::addRow("zero") << 0.0 << QString();
    QTest::addRow("negative") << -1.0 << QString();
}

void TestPresetObject::valuesAreShownWithTheirBlank()
{
    QFETCH(const double, value);
    QLineEdit box;
    clsPresetButton preset;
    preset.setDisplay(&box);
    preset.setValue(value);
    QCOMPARE(preset.value(), value);
    QTEST(box.text(), "text");
}

void TestPresetObject::refreshShowsTheValueAgain()
{
    QLineEdit box;
    clsPresetButton preset;
    preset.setDisplay(&box);
    preset.setValue(101);
    box.clear();
    preset.refresh();
    QCOMPARE(box.text(), QStringLiteral(" 101"));
}

void TestPresetObject::settingsKeepTheValueUnderTheKeyWithItsBlank()
{
    clsPresetButton preset;
    preset.setIndex(4);
    preset.setValue(145.5);
    preset.SaveToPersistantStorage();
    QCOMPARE(stored(4), QStringLiteral(" 145.5"));
    clsPresetButton loaded;
    loaded.setIndex(4);
    loaded.LoadFromPersistantStorage();
    QCOMPARE(loaded.value(), 145.5);
    QCOMPARE(loaded.DisplayText(), QStringLiteral(" 145.5"));
}

void TestPresetObject::storedTextThatIsNoNumberLoadsAsZero_data()
{
    QTest::addColumn<QString>("text");
    QTest::addRow("missing") << QString();
    QTest::addRow("words") << QStringLiteral("none");
    QTest::addRow("half a number") << QStringLiteral("145x5");
    QTest::addRow("endless") << QStringLiteral("1E999");
}

void TestPresetObject::storedTextThatIsNoNumberLoadsAsZero()
{
    QFETCH(const QString, text);
    store(5, text);
    clsPresetButton preset;
    preset.setIndex(5);
    preset.setValue(3);
    preset.LoadFromPersistantStorage();
    QCOMPARE(preset.value(), 0.0);
    QCOMPARE(preset.DisplayText(), QString());
}

void TestPresetObject::enablingDoesNotLookAtTheValue()
{
    QPushButton button;
    clsPresetButton preset;
    preset.EnableIfValid(); // without a button nothing happens
    QVERIFY(!preset.Enabled());
    preset.setButton(&button);
    preset.Disable();
    QVERIFY(!button.isEnabled());
    preset.EnableIfValid();
    QVERIFY(button.isEnabled());
    QVERIFY(preset.Enabled());
    preset.setEnabled(false);
    QVERIFY(!button.isEnabled());
    QVERIFY(!preset.Enabled());
}

void TestPresetObject::setModeColoursTheButton()
{
    QPushButton button(QStringLiteral(" 145.5"));
    button.resize(120, 40);
    clsPresetButton preset;
    preset.setButton(&button);
    QVERIFY(!isLightGreen(button));
    preset.setSetMode(true);
    QVERIFY(isLightGreen(button));
    QVERIFY(button.toolTip().contains(QStringLiteral("store")));
    preset.setSetMode(false);
    QVERIFY(!isLightGreen(button));
    QCOMPARE(button.styleSheet(), QString());
}

void TestPresetObject::anAmpersandInACaptionIsShown()
{
    QPushButton button;
    clsPresetButton preset;
    preset.setDisplay(&button);
    preset.setDisplayText(QStringLiteral("a & b"));
    QCOMPARE(button.text(), QStringLiteral("a && b"));
    QCOMPARE(preset.DisplayText(), QStringLiteral("a & b"));
}

void TestPresetObject::theObjectsOwnMessage()
{
    Fixture fixture;
    fixture.boxes.expect(
        QStringLiteral("That preset button has not been set.\r\nTo set a preset button to the "
                       "current frequency, click 'set presets' then click the preset button. "
                       "Then click 'set presets' again."),
        MessageBox::Information);
    clsPresetButton().ShowThatPresetIsNotSetMessageBox();
    QCOMPARE(fixture.boxes.shown().constFirst().title, QStringLiteral("KELDO-X Control Program"));
}

KELDOX_TEST(TestPresetObject)
#include "TestPresetObject.moc"
