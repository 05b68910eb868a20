// The controls that the windows share: option set, up-down arrows, status bar with panels,
// indicator light, control array.
#include "support/TestMain.h"

#include "widgets/ControlArray.h"
#include "widgets/IndicatorLight.h"
#include "widgets/OptionSet.h"
#include "widgets/PanelStatusBar.h"
#include "widgets/UpDown.h"

#include <QLabel>
#include <QMainWindow>
#include <QRadioButton>
#include <QSignalSpy>
#include <QToolButton>
#include <QVBoxLayout>

class TestControls : public QObject
{
    Q_OBJECT

private slots:
    void atMostOneOptionIsSelected();
    void aClickTellsWhatWasSelectedBefore();
    void clickingTheSelectedOptionKeepsItSelected();
    void selectingByCodeIsNoClick();
    void arrowKeysSelectNothing();
    void theArrowsAnswerTheMouse();
    void theArrowsAnswerTheKeyboard();
    void disabledArrowsAnswerNothing();
    void panelsAreNumberedAndNamedFromOne();
    void aPanelThatIsNotThereRaises9();
    void aLongTextDoesNotWidenTheWindow();
    void aPanelShowsItsTextPlain();
    void aLightSaysInWordsWhatItMeans();
    void aLightThatIsOffLeavesItsColourToThePalette();
    void controlsOfAnArrayAreNamedByTheirIndex();
};

namespace {

struct Options
{
    Options()
    {
        auto *column = new QVBoxLayout(&window);
        for (int index = 1; index <= 3; ++index) {
            buttons[index] = new QRadioButton(QString::number(index), &window);
            column->addWidget(buttons[index]);
            set.add(index, buttons[index]);
        }
        window.show();
    }

    QList<int> checked() const
    {
        QList<int> all;
        for (auto button = buttons.cbegin(); button != buttons.cend(); ++button)
            if (button.value()->isChecked())
                all.append(button.key());
        return all;
    }

    void click(int index)
    {
        QTest::mouseClick(buttons[index], Qt::LeftButton, {},
                          QPoint(8, buttons[index]->height() / 2));
    }

    QWidget window;
    QMap<int, QRadioButton *> buttons;
    OptionSet set;
};

} // namespace

void TestControls::atMostOneOptionIsSelected()
{
    Options options;
    QCOMPARE(options.set.selected(), 0);
    options.click(1);
    QCOMPARE(options.checked(), QList<int>{1});
    options.click(3);
    QCOMPARE(options.checked(), QList<int>{3});
    QCOMPARE(options.set.selected(), 3);
}

void TestControls::aClickTellsWhatWasSelectedBefore()
{
    Options options;
    QSignalSpy clicks(&options.set, &OptionSet::Click);
    options.click(2);
    options.click(1);
    QCOMPARE(clicks.size(), 2);
    QCOMPARE(clicks.at(0), (QList<QVariant>{2, 0}));
    QCOMPARE(clicks.at(1), (QList<QVariant>{1, 2}));
}

void TestControls::clickingTheSelectedOptionKeepsItSelected()
{
    Options options;
    options.click(2);
    QSignalSpy clicks(&options.set, &OptionSet::Click);
    options.click(2);
    QCOMPARE(options.checked(), QList<int>{2});
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.at(0), (QList<QVariant>{2, 2}));
}

void TestControls::selectingByCodeIsNoClick()
{
    Options options;
    QSignalSpy clicks(&options.set, &OptionSet::Click);
    options.set.select(2);
    QCOMPARE(options.checked(), QList<int>{2});
    options.set.select(0);
    QCOMPARE(options.checked(), QList<int>());
    options.set.select(9); // not in the set
    QCOMPARE(options.set.selected(), 0);
    QCOMPARE(clicks.size(), 0);
}

void TestControls::arrowKeysSelectNothing()
{
    Options options;
    options.set.select(1);
    options.buttons[1]->setFocus();
    QSignalSpy clicks(&options.set, &OptionSet::Click);
    QTest::keyClick(options.buttons[1], Qt::Key_Down);
    QTest::keyClick(options.buttons[1], Qt::Key_Right);
    QCOMPARE(options.checked(), QList<int>{1});
    QCOMPARE(clicks.size(), 0);
}

void TestControls::theArrowsAnswerTheMouse()
{
    UpDown arrows;
    arrows.show();
    QSignalSpy ups(&arrows, &UpDown::UpClick);
    QSignalSpy downs(&arrows, &UpDown::DownClick);
    QTest::mouseClick(arrows.findChild<QToolButton *>(QStringLiteral("up")), Qt::LeftButton);
    QCOMPARE(ups.size(), 1);
    QCOMPARE(downs.size(), 0);
    QTest::mouseClick(arrows.findChild<QToolButton *>(QStringLiteral("down")), Qt::LeftButton);
    QCOMPARE(ups.size(), 1);
    QCOMPARE(downs.size(), 1);
}

void TestControls::theArrowsAnswerTheKeyboard()
{
    UpDown arrows;
    arrows.show();
    QVERIFY(arrows.focusPolicy() & Qt::TabFocus);
    QSignalSpy ups(&arrows, &UpDown::UpClick);
    QSignalSpy downs(&arrows, &UpDown::DownClick);
    QTest::keyClick(&arrows, Qt::Key_Up);
    QCOMPARE(ups.size(), 1);
    QCOMPARE(downs.size(), 0);
    QTest::keyClick(&arrows, Qt::Key_Down);
    QTest::keyClick(&arrows, Qt::Key_Left);
    QCOMPARE(ups.size(), 1);
    QCOMPARE(downs.size(), 1);
}

void TestControls::disabledArrowsAnswerNothing()
{
    UpDown arrows;
    arrows.show();
    arrows.setEnabled(false);
    QSignalSpy ups(&arrows, &UpDown::UpClick);
    QTest::mouseClick(arrows.findChild<QToolButton *>(QStringLiteral("up")), Qt::LeftButton);
    QTest::keyClick(&arrows, Qt::Key_Up);
    QCOMPARE(ups.size(), 0);
}

void TestControls::panelsAreNumberedAndNamedFromOne()
{
    PanelStatusBar bar;
    bar.setPanels({3, 1});
    QCOMPARE(bar.objectName(), QStringLiteral("StatusBar"));
    QCOMPARE(bar.panelCount(), 2);
    bar.setPanelText(1, QStringLiteral("first"));
    bar.setPanelText(2, QStringLiteral("second"));
    QCOMPARE(bar.panelText(1), QStringLiteral("first"));
    QCOMPARE(bar.findChild<QLabel *>(QStringLiteral("StatusBar_2"))->text(),
             QStringLiteral("second"));
    QCOMPARE(bar.findChild<QLabel *>(QStringLiteral("StatusBar_1"))->accessibleName(),
             QStringLiteral("status 1: first"));
}

void TestControls::aPanelThatIsNotThereRaises9()
{
    PanelStatusBar bar;
    bar.setPanels({1, 1});
    for (const int panel : {0, 3}) {
        int number = 0;
        try {
            bar.setPanelText(panel, QStringLiteral("x"));
        } catch (const RunTimeError &error) {
            number = error.number();
        }
        QCOMPARE(number, 9);
    }
}

void TestControls::aLongTextDoesNotWidenTheWindow()
{
    QMainWindow window;
    auto *bar = new PanelStatusBar;
    window.setStatusBar(bar);
    bar->setPanels({2, 1, 1});
    window.resize(300, 200);
    window.show();
    bar->setPanelText(1, QStringLiteral("x"));
    bar->setPanelText(3, QStringLiteral("x"));
    QCoreApplication::processEvents();
    const int minimum = window.minimumSizeHint().width();
    const QString text(2000, QLatin1Char('W'));
    bar->setPanelText(1, text);
    bar->setPanelText(3, text);
    QCoreApplication::processEvents();
    QCOMPARE(window.width(), 300);
    QCOMPARE(window.minimumSizeHint().width(), minimum);
    QCOMPARE(bar->findChild<QLabel *>(QStringLiteral("StatusBar_1"))->toolTip(), text);
}

void TestControls::aPanelShowsItsTextPlain()
{
    PanelStatusBar bar;
    bar.setPanels({1});
    bar.setPanelText(1, QStringLiteral("<b>x</b>"));
    QCOMPARE(bar.findChild<QLabel *>(QStringLiteral("StatusBar_1"))->textFormat(), Qt::PlainText);
    QCOMPARE(bar.panelText(1), QStringLiteral("<b>x</b>"));
}

void TestControls::aLightSaysInWordsWhatItMeans()
{
    IndicatorLight light;
    QCOMPARE(light.fillColor(), IndicatorLight::buttonFace);
    light.setFillColor(IndicatorLight::red, QStringLiteral("no answer"));
    QCOMPARE(light.fillColor(), QColor(0xFF, 0, 0));
    QCOMPARE(light.toolTip(), QStringLiteral("no answer"));
    QCOMPARE(light.accessibleDescription(), QStringLiteral("no answer"));

    light.resize(21, 21);
    const QImage picture = light.grab().toImage();
    QCOMPARE(picture.pixelColor(picture.rect().center()), QColor(Qt::red));
}

void TestControls::aLightThatIsOffLeavesItsColourToThePalette()
{
    QCOMPARE(IndicatorLight::green, QColor(Qt::green));
    QCOMPARE(IndicatorLight::red, QColor(Qt::red));
    QVERIFY(!IndicatorLight::buttonFace.isValid());
    IndicatorLight light;
    QPalette palette;
    palette.setColor(QPalette::Button, QColor(1, 2, 3));
    light.setPalette(palette);
    light.resize(21, 21);
    const QImage picture = light.grab().toImage();
    QCOMPARE(picture.pixelColor(picture.rect().center()), QColor(1, 2, 3));
}

void TestControls::controlsOfAnArrayAreNamedByTheirIndex()
{
    QWidget window;
    ControlArray<QLabel> labels(QStringLiteral("lblPort"));
    for (int index = 1; index <= 8; ++index)
        labels.insert(index, new QLabel(&window));
    QCOMPARE(labels(3)->objectName(), QStringLiteral("lblPort_3"));
    QCOMPARE(labels.all().size(), 8);
    for (const int outside : {0, 9}) {
        int number = 0;
        try {
            labels(outside);
        } catch (const RunTimeError &error) {
            number = error.number();
        }
        QCOMPARE(number, 9);
    }
}

KELDOX_TEST(TestControls)
#include "TestControls.moc"
