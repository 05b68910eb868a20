// What screen readers hear of the shared controls, and what becomes of texts from outside in them.
#include "support/TestMain.h"

#include "widgets/EntryMark.h"
#include "widgets/IndicatorLight.h"
#include "widgets/OptionSet.h"
#include "widgets/PanelStatusBar.h"
#include "widgets/PlainText.h"
#include "widgets/UpDown.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>

class TestSpoken : public QObject
{
    Q_OBJECT

private slots:
    void aLightIsHeardWithItsMeaning();
    void aLightThatIsNotConfirmedSaysSo();
    void arrowsAreHeardWithTheValueOfTheirBox();
    void arrowsAnswerTheReadersActions();
    void anOptionIsHeardAsAnOption();
    void aStatusPanelIsHeardWithItsText();
    void markupFromOutsideIsShownAsItIs_data();
    void markupFromOutsideIsShownAsItIs();
    void anAmpersandIsNoMnemonic();
};

static QAccessibleInterface *heard(QObject *control)
{
    return QAccessible::queryAccessibleInterface(control);
}

void TestSpoken::aLightIsHeardWithItsMeaning()
{
    IndicatorLight light;
    light.setAccessibleName(QStringLiteral("communication"));
    light.setFillColor(IndicatorLight::green, QStringLiteral("OK, it answered"));
    QCOMPARE(heard(&light)->role(), QAccessible::Indicator);
    QCOMPARE(heard(&light)->text(QAccessible::Name),
             QStringLiteral("communication: OK, it answered"));
    light.setFillColor(IndicatorLight::red, QStringLiteral("no answer"));
    QCOMPARE(heard(&light)->text(QAccessible::Name), QStringLiteral("communication: no answer"));
    QCOMPARE(heard(&light)->text(QAccessible::Value), QStringLiteral("no answer"));
}

void TestSpoken::aLightThatIsNotConfirmedSaysSo()
{
    IndicatorLight light;
    light.setAccessibleName(QStringLiteral("attenuation"));
    light.setFillColor(IndicatorLight::amber, QStringLiteral("10 dB"));
    const QImage confirmed = light.grab().toImage();
    markConfirmed(light, false);
    QCOMPARE(light.accessibleDescription(), QStringLiteral("10 dB, unconfirmed"));
    QCOMPARE(light.toolTip(),
             QStringLiteral("10 dB\nnot confirmed by the unit: press F5 to read it again"));
    QCOMPARE(heard(&light)->text(QAccessible::Name),
             QStringLiteral("attenuation: 10 dB, unconfirmed"));
    QVERIFY(light.grab().toImage() != confirmed);
    QCOMPARE(light.fillColor(), QColor(IndicatorLight::amber));
    // What the light shows may change under the mark.
    light.setFillColor(IndicatorLight::buttonFace, QStringLiteral("off"));
    QCOMPARE(light.accessibleDescription(), QStringLiteral("off, unconfirmed"));
    light.setFillColor(IndicatorLight::amber, QStringLiteral("10 dB"));
    markConfirmed(light, true);
    QCOMPARE(light.accessibleDescription(), QStringLiteral("10 dB"));
    QCOMPARE(light.grab().toImage(), confirmed);
}

void TestSpoken::arrowsAreHeardWithTheValueOfTheirBox()
{
    QLineEdit box(QStringLiteral("12.5"));
    UpDown arrows;
    arrows.setAccessibleName(QStringLiteral("attenuation"));
    QCOMPARE(heard(&arrows)->text(QAccessible::Value), QString());
    arrows.setBox(&box);
    QAccessibleInterface *spoken = heard(&arrows);
    QCOMPARE(spoken->role(), QAccessible::SpinBox);
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("attenuation"));
    QCOMPARE(spoken->text(QAccessible::Value), QStringLiteral("12.5"));
    QVERIFY(spoken->valueInterface());
    QCOMPARE(spoken->valueInterface()->currentValue().toDouble(), 12.5);
    QCOMPARE(spoken->childCount(), 2);
    QCOMPARE(spoken->child(0)->text(QAccessible::Name), QStringLiteral("up"));
    QCOMPARE(spoken->child(1)->text(QAccessible::Name), QStringLiteral("down"));
}

void TestSpoken::arrowsAnswerTheReadersActions()
{
    UpDown arrows;
    QSignalSpy ups(&arrows, &UpDown::UpClick);
    QSignalSpy downs(&arrows, &UpDown::DownClick);
    QAccessibleActionInterface *actions = heard(&arrows)->actionInterface();
    QVERIFY(actions);
    actions->doAction(QAccessibleActionInterface::increaseAction());
    QCOMPARE(ups.size(), 1);
    actions->doAction(QAccessibleActionInterface::decreaseAction());
    QCOMPARE(downs.size(), 1);
    arrows.setEnabled(false);
    actions->doAction(QAccessibleActionInterface::increaseAction());
    QCOMPARE(ups.size(), 1);
}

void TestSpoken::anOptionIsHeardAsAnOption()
{
    OptionSet set;
    QRadioButton first(QStringLiteral("nominal"));
    QRadioButton second;
    second.setAccessibleName(QStringLiteral("the second"));
    set.add(1, &first);
    set.add(2, &second);
    set.select(2);
    QCOMPARE(heard(&first)->role(), QAccessible::RadioButton);
    QCOMPARE(heard(&first)->text(QAccessible::Name), QStringLiteral("nominal"));
    QCOMPARE(heard(&second)->text(QAccessible::Name), QStringLiteral("the second"));
    QVERIFY(heard(&first)->state().checkable);
    QVERIFY(!heard(&first)->state().checked);
    QVERIFY(heard(&second)->state().checked);
    QSignalSpy clicks(&set, &OptionSet::Click);
    heard(&first)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(clicks.size(), 1);
    QVERIFY(heard(&first)->state().checked);
}

void TestSpoken::aStatusPanelIsHeardWithItsText()
{
    PanelStatusBar bar;
    bar.setPanels({1, 1});
    bar.setPanelText(2, QStringLiteral("VCO UNLOCKED"));
    auto *panel = bar.findChild<QLabel *>(QStringLiteral("StatusBar_2"));
    QCOMPARE(heard(panel)->role(), QAccessible::StaticText);
    QCOMPARE(heard(panel)->text(QAccessible::Name), QStringLiteral("status 2: VCO UNLOCKED"));
}

void TestSpoken::markupFromOutsideIsShownAsItIs_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("bold") << "<b>3.40</b>";
    QTest::newRow("picture") << "<img src='x'>3.40";
    QTest::newRow("document") << "<!DOCTYPE html>3.40";
    QTest::newRow("entity") << "3.40 &lt;b&gt; & more";
    QTest::newRow("later line") << "3.40\n<b>x</b>";
    QTest::newRow("plain") << "3 < 4 & 5 > 4";
}

// As Qt shows a tool tip: rich when it looks so.
static QString asShown(const QString &toolTip)
{
    if (!Qt::mightBeRichText(toolTip))
        return toolTip;
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

void TestSpoken::markupFromOutsideIsShownAsItIs()
{
    QFETCH(const QString, text);
    PanelStatusBar bar;
    bar.setPanels({1});
    bar.setPanelText(1, text);
    const auto *panel = bar.findChild<QLabel *>(QStringLiteral("StatusBar_1"));
    QCOMPARE(panel->textFormat(), Qt::PlainText);
    QCOMPARE(asShown(panel->toolTip()), text);
    IndicatorLight light;
    light.setFillColor(IndicatorLight::red, text);
    QCOMPARE(asShown(light.toolTip()), text);
}

void TestSpoken::anAmpersandIsNoMnemonic()
{
    QCOMPARE(plainCaption(QStringLiteral("a&b && c")), QStringLiteral("a&&b &&&& c"));
}

KELDOX_TEST(TestSpoken)
#include "TestSpoken.moc"
