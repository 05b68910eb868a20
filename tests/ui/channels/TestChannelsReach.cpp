// The channels window on small screens, from the keyboard and for screen readers.
#include "ChannelsBench.h"

#include "widgets/ScrollPane.h"

#include <QAccessible>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>

class TestChannelsReach : public QObject
{
    Q_OBJECT

private slots:
    void theCaptionNamesTheWindow();
    void itScrollsInsteadOfGrowing_data();
    void itScrollsInsteadOfGrowing();
    void everyControlHasARoleANameAndItsValue();
    void theArrowsSpeakTheirBoxes();
    void optionsAreHeardAsOptions();
    void controlAndANumberGoToAChannel();
    void theKeysAreTold();
    void tabGoesInReadingOrder();
    void markupFromAUnitIsShownAsItIs();
    void itComesBackWhereItWasLeft();
    void itIsFirstShownWhole();
    void firstShownInASearchItEndsAsWide();
};

static QAccessibleInterface *heard(QObject *control)
{
    return QAccessible::queryAccessibleInterface(control);
}

void TestChannelsReach::theCaptionNamesTheWindow()
{
    const ChannelsBench b;
    QCOMPARE(b.window->windowTitle(), QStringLiteral("KELDO-X Control Program - Channels"));
}

void TestChannelsReach::itScrollsInsteadOfGrowing_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<QSize>("room");
    QTest::newRow("800x600") << 0 << QSize(784, 520);
    QTest::newRow("200 %") << 0 << QSize(384, 250);
    QTest::newRow("20 pt") << 20 << QSize(784, 520);
}

void TestChannelsReach::itScrollsInsteadOfGrowing()
{
    QFETCH(const int, points);
    QFETCH(const QSize, room);
    const QFont usual = QApplication::font();
    const auto restore = qScopeGuard([&] { QApplication::setFont(usual); });
    QFont font = usual;
    if (points)
        font.setPointSize(points);
    QApplication::setFont(font);
    ChannelsBench b;
    const QSize screen = b.window->screen()->availableGeometry().size();
    QVERIFY(b.window->width() <= screen.width() && b.window->height() <= screen.height());
    b.connected(4, ChannelsBench::fullUnit());
    b.window->resize(room);
    QTest::qWait(1);
    QCOMPARE(b.window->size(), room);
    for (const QString &name : ChannelsBench::rowNames()) {
        auto *control = b.find<QWidget>(qPrintable(name), 4);
        for (QWidget *above = control; above; above = above->parentWidget())
            if (auto *pane = qobject_cast<ScrollPane *>(above))
                pane->ensureWidgetVisible(control, 0, 0);
        QVERIFY2(!control->isVisible() || !control->visibleRegion().isEmpty(), qPrintable(name));
    }
    const QString folder = qEnvironmentVariable("KELDOX_PICTURES");
    if (!folder.isEmpty())
        b.window->grab().save(
            folder + QStringLiteral("/channels-room-%1-%2.png").arg(room.width()).arg(points));
}

void TestChannelsReach::everyControlHasARoleANameAndItsValue()
{
    ChannelsBench b;
    b.connected(1, ChannelsBench::fullUnit());
    int seen = 0;
    for (QWidget *control : b.window->findChildren<QWidget *>()) {
        const QString who = control->objectName();
        const bool counts = qobject_cast<QLineEdit *>(control) ||
                            qobject_cast<QAbstractButton *>(control) ||
                            qobject_cast<UpDown *>(control) || qobject_cast<QLabel *>(control);
        if (!control->isVisible() || !counts ||
            control->parentWidget() == b.window->findChild<QTabBar *>())
            continue;
        ++seen;
        QAccessibleInterface *spoken = heard(control);
        QVERIFY2(spoken->role() != QAccessible::Client && spoken->role() != QAccessible::NoRole,
                 qPrintable(who));
        QVERIFY2(!spoken->text(QAccessible::Name).trimmed().isEmpty(), qPrintable(who));
        if (const auto *label = qobject_cast<QLabel *>(control))
            QVERIFY2(spoken->text(QAccessible::Name).contains(label->text().trimmed()),
                     qPrintable(who));
        if (const auto *box = qobject_cast<QLineEdit *>(control))
            QCOMPARE(spoken->text(QAccessible::Value), box->text());
        if (const auto *button = qobject_cast<QAbstractButton *>(control);
            button && button->isCheckable())
            QCOMPARE(bool(spoken->state().checked), button->isChecked());
    }
    QVERIFY(seen > 25);
}

void TestChannelsReach::theArrowsSpeakTheirBoxes()
{
    ChannelsBench b;
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.attenuation = 12.5;
    settings.inputAttenuation = 3;
    b.connected(1, settings);
    for (const auto &[arrows, box] :
         {std::pair("udAtten", "txtChanAtten"), std::pair("udInputAtten", "txtChanInputAtten"),
          std::pair("udAGCOffset", "txtChanAGCoffset")}) {
        QCOMPARE(heard(b.arrows(arrows))->role(), QAccessible::SpinBox);
        QCOMPARE(heard(b.arrows(arrows))->text(QAccessible::Value), b.box(box)->text());
    }
    QCOMPARE(heard(b.arrows("udAtten"))->text(QAccessible::Value), QStringLiteral("12.5"));
    heard(b.arrows("udAtten"))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::increaseAction());
    QVERIFY(!b.sent().isEmpty());
}

void TestChannelsReach::optionsAreHeardAsOptions()
{
    ChannelsBench b;
    b.bind(1);
    b.connected(2);
    for (int index = 1; index <= 2; ++index) {
        auto *option = b.find<QRadioButton>("optPortNum", index);
        QCOMPARE(heard(option)->role(), QAccessible::RadioButton);
        QCOMPARE(bool(heard(option)->state().checked), index == 2);
    }
}

static QString focused()
{
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
}

void TestChannelsReach::controlAndANumberGoToAChannel()
{
    ChannelsBench b;
    auto *tabs = b.window->findChild<QTabWidget *>(QStringLiteral("tabsChannels"));
    b.bind(6);
    b.connected(2);
    const QStringList asked = b.sent(2);
    QTest::keyClick(b.window.get(), Qt::Key_6, Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), 1);
    QCOMPARE(focused(), QStringLiteral("optPortNum_6"));
    QTest::keyClick(b.window.get(), Qt::Key_2, Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(focused(), QStringLiteral("txtChanFreq_2"));
    QTest::keyClick(b.window.get(), Qt::Key_3, Qt::ControlModifier); // nobody is there
    QCOMPARE(focused(), QStringLiteral("txtChanFreq_2"));
    // Going there connects nothing.
    QCOMPARE(b.window->ChanIndex(), 2);
    QCOMPARE(b.sent(2), asked);
    QCOMPARE(b.sent(6), QStringList());
}

void TestChannelsReach::theKeysAreTold()
{
    const ChannelsBench b;
    const auto *tabs = b.window->findChild<QTabWidget *>(QStringLiteral("tabsChannels"));
    QVERIFY(tabs->tabToolTip(0).contains(QStringLiteral("Ctrl+1 to Ctrl+4")));
    QVERIFY(tabs->tabToolTip(1).contains(QStringLiteral("Ctrl+5 to Ctrl+8")));
    QCOMPARE(tabs->tabToolTip(2), QString());
    QVERIFY(b.find<QLabel>("lblChannel", 0)->toolTip().contains(QStringLiteral("Ctrl")));
}

// The way of the Tab key through two rows goes right and down, never back.
void TestChannelsReach::tabGoesInReadingOrder()
{
    ChannelsBench b;
    b.connected(2, ChannelsBench::fullUnit());
    b.connected(1, ChannelsBench::fullUnit());
    auto *first = b.find<QRadioButton>("optPortNum", 1);
    first->setFocus();
    QPoint before(-1, -1);
    int row = -1;
    int steps = 0;
    while (steps < 40) {
        QWidget *control = QApplication::focusWidget();
        if (qobject_cast<QTabBar *>(control))
            break; // beyond the rows
        const QPoint place = control->mapTo(b.window.get(), control->rect().center());
        const int index = control->objectName().section(QLatin1Char('_'), -1).toInt();
        if (index == row)
            QVERIFY2(place.x() > before.x(), qPrintable(control->objectName()));
        else
            QVERIFY2(index > row && place.y() > before.y(), qPrintable(control->objectName()));
        row = index;
        before = place;
        QTest::keyClick(control, Qt::Key_Tab);
        ++steps;
        if (QApplication::focusWidget() == first)
            break;
    }
    QVERIFY(steps > 8);
}

void TestChannelsReach::markupFromAUnitIsShownAsItIs()
{
    const ChannelsBench b;
    b.window->setStatusPanel(2, QStringLiteral("<b>3.40</b>"));
    const auto *panel = b.find<QLabel>("StatusBar", 2);
    QCOMPARE(panel->textFormat(), Qt::PlainText);
    QTextDocument tip;
    tip.setHtml(panel->toolTip());
    QCOMPARE(tip.toPlainText(), QStringLiteral("<b>3.40</b>"));
    for (const QLabel *label : b.window->findChildren<QLabel *>())
        QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->text()));
}

void TestChannelsReach::itComesBackWhereItWasLeft()
{
    ChannelsBench b;
    b.window->move(60, 70);
    b.window->resize(500, 300);
    b.window->close();
    const auto again = windowMakers().channelsWindow();
    const auto *window = dynamic_cast<QWidget *>(again.get());
    again->show();
    QCOMPARE(QRect(window->pos(), window->size()), QRect(60, 70, 500, 300));
}

static bool isScrolled(const QWidget &window)
{
    for (const auto *area : window.findChildren<QScrollArea *>())
        if (area->isVisible() &&
            (area->horizontalScrollBar()->isVisible() || area->verticalScrollBar()->isVisible()))
            return true;
    return false;
}

void TestChannelsReach::itIsFirstShownWhole()
{
    const ChannelsBench b;
    QCOMPARE(b.window->size(), b.window->sizeHint());
    QVERIFY(!isScrolled(*b.window));
}

// The strip stands in the window before anybody has seen it, and goes in front of everybody.
void TestChannelsReach::firstShownInASearchItEndsAsWide()
{
    const ChannelsBench b(false);
    b.window->showProgressLine(QStringLiteral("Looking at COM7."));
    b.window->show();
    QVERIFY(!isScrolled(*b.window));
    b.window->showProgressLine({});
    QCOMPARE(b.window->size(), b.window->sizeHint());
    QVERIFY(!isScrolled(*b.window));
}

KELDOX_TEST(TestChannelsReach)
#include "TestChannelsReach.moc"
