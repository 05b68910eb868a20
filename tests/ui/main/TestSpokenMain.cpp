// What screen readers hear in the main window, control by control.
#include "MainBench.h"
#include "support/Heard.h"

class TestSpokenMain : public QObject
{
    Q_OBJECT

private slots:
    void everyControlHasARoleANameAndItsValue();
    void liveValuesAreHeard();
    void theSlidersSpeakTheirBoxes();
    void inputLimitingIsHeardAsOptions();
    void theSlidersMarkIsSeen_data();
    void theSlidersMarkIsSeen();
};

void TestSpokenMain::everyControlHasARoleANameAndItsValue()
{
    const ConnectedBench bench;
    QCOMPARE(unheard(*bench.window), QStringList());
    for (const QLabel *label : bench.window->findChildren<QLabel *>())
        QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->objectName()));
}

void TestSpokenMain::liveValuesAreHeard()
{
    ConnectedBench bench;
    bench.window->setStatusPanel(1, QStringLiteral("CONNECTED ON COM5"));
    QVERIFY(
        heardName(bench.find<QLabel>("StatusBar_1")).contains(QStringLiteral("CONNECTED ON COM5")));
    QCOMPARE(heardName(bench.find<QLabel>("lblCurrentChannel")),
             bench.caption("lblCurrentChannel"));
    QCOMPARE(heardName(bench.find<QLabel>("lblChannelSpacing")).trimmed(),
             bench.caption("lblChannelSpacing").trimmed());
    QVERIFY(heardName(bench.find<QWidget>("ShapeStatusLight")).contains(QStringLiteral(": OK")));
    app().presets[4]->setValue(106.5);
    QCOMPARE(heardName(bench.find<QPushButton>("cmdSetDUTFreq_4")),
             QStringLiteral("Preset 1: 106.5 MHz"));
    QCOMPARE(heardName(bench.find<QPushButton>("cmdSetDUTFreq_5")),
             QStringLiteral("Preset 2: not set"));
    QCOMPARE(heard(bench.find<QLineEdit>("txtFreq_1"))->text(QAccessible::Value),
             QStringLiteral("100 MHz"));
}

void TestSpokenMain::theSlidersSpeakTheirBoxes()
{
    ConnectedBench bench;
    bench.enter(QStringLiteral("106.5"));
    QAccessibleInterface *spoken = heard(bench.slider());
    QCOMPARE(spoken->role(), QAccessible::Slider);
    QCOMPARE(spoken->text(QAccessible::Value), QStringLiteral("106.5"));
    QVERIFY(spoken->valueInterface());
    QCOMPARE(spoken->valueInterface()->currentValue().toInt(), bench.slider()->value());
    QCOMPARE(heard(bench.find<StepSlider>("HScroll_Pelltrim"))->text(QAccessible::Value),
             bench.find<QLineEdit>("txtPelltrim")->text());
}

void TestSpokenMain::inputLimitingIsHeardAsOptions()
{
    ConnectedBench bench;
    emit bench.window->device()->InputLimitingModeChange(2);
    for (int mode = 1; mode <= 3; ++mode) {
        auto *option =
            bench.find<QRadioButton>(qPrintable(QStringLiteral("optInputLimit_%1").arg(mode)));
        QCOMPARE(heard(option)->role(), QAccessible::RadioButton);
        QCOMPARE(bool(heard(option)->state().checked), mode == 2);
    }
}

static double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

static double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

static QPalette darkPalette()
{
    QPalette dark(QColor(60, 60, 64), QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
    return dark;
}

void TestSpokenMain::theSlidersMarkIsSeen_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << QPalette(QColor(239, 239, 239), QColor(239, 239, 239));
    QTest::newRow("dark") << darkPalette();
    QPalette grey(QColor(128, 128, 128), QColor(128, 128, 128));
    QTest::newRow("grey") << grey;
}

void TestSpokenMain::theSlidersMarkIsSeen()
{
    QFETCH(const QPalette, palette);
    StepSlider slider;
    slider.setPalette(palette);
    slider.setRange(0, 100);
    slider.setValue(40);
    slider.resize(400, 24);
    slider.show();
    for (const bool focused : {false, true}) {
        if (focused)
            slider.setFocus();
        const QImage picture = slider.grab().toImage();
        const QPoint middle = thumbOf(slider);
        const QColor mark = picture.pixelColor(middle);
        for (const int aside : {-6, 6}) {
            const QColor thumb = picture.pixelColor(middle + QPoint(aside, 0));
            QVERIFY2(contrast(mark, thumb) >= 3,
                     qPrintable(mark.name() + QStringLiteral(" on ") + thumb.name()));
        }
    }
}

KELDOX_TEST(TestSpokenMain)
#include "TestSpokenMain.moc"
