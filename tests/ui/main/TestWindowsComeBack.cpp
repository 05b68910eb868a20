// The program's windows come back where they were left, each at its own place.
#include "MainBench.h"

#include "platform/Application.h"
#include "platform/SettingsStore.h"
#include "windowMakers.h"

class TestWindowsComeBack : public QObject
{
    Q_OBJECT

private slots:
    void eachWindowComesBack_data();
    void eachWindowComesBack();
    void theMonitorScrollsOnASmallScreen();
    void aWindowThatIsMadeByItselfStaysWhereItIs();
};

template <class View> static std::shared_ptr<QWidget> widgetOf(const std::shared_ptr<View> &view)
{
    return std::dynamic_pointer_cast<QWidget>(view);
}

static std::shared_ptr<QWidget> made(const QString &name)
{
    const WindowMakers makers = windowMakers();
    if (name == QStringLiteral("main"))
        return widgetOf(makers.mainWindow());
    if (name == QStringLiteral("channels"))
        return widgetOf(makers.channelsWindow());
    return widgetOf(makers.ioMonitor());
}

void TestWindowsComeBack::eachWindowComesBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRect>("place");
    QTest::newRow("main") << "main" << QRect(20, 30, 620, 460);
    QTest::newRow("channels") << "channels" << QRect(40, 50, 520, 260);
    QTest::newRow("monitor") << "monitor" << QRect(60, 70, 560, 400);
}

void TestWindowsComeBack::eachWindowComesBack()
{
    QFETCH(const QString, name);
    QFETCH(const QRect, place);
    Fixture fixture;
    fixture.boxes.acceptAll(); // the monitor finds no ports
    {
        const auto window = made(name);
        window->show();
        window->move(place.topLeft());
        window->resize(place.size());
        window->hide();
    }
    QCOMPARE(SettingsStore::read(applicationTitle(), QStringLiteral("Settings"),
                                 QStringLiteral("Geometry ") + name),
             QStringLiteral("%1 %2 %3 %4")
                 .arg(place.x())
                 .arg(place.y())
                 .arg(place.width())
                 .arg(place.height()));
    const auto again = made(name);
    again->show();
    QCOMPARE(QRect(again->pos(), again->size()), place);
}

void TestWindowsComeBack::theMonitorScrollsOnASmallScreen()
{
    Fixture fixture;
    fixture.boxes.acceptAll(); // it finds no ports
    const auto window = made(QStringLiteral("monitor"));
    const QSize screen = window->screen()->availableGeometry().size();
    window->show();
    QVERIFY(window->width() <= screen.width() && window->height() <= screen.height());
    const QSize room(384, 250); // 800 by 600 at 200 %
    window->resize(room);
    QTest::qWait(1);
    QCOMPARE(window->size(), room);
    auto *area = window->findChild<QScrollArea *>();
    for (QPushButton *button : window->findChildren<QPushButton *>()) {
        if (!button->isVisible())
            continue; // the search strip, until it is asked for
        area->ensureWidgetVisible(button, 0, 0);
        QVERIFY2(!button->visibleRegion().isEmpty(), qPrintable(button->objectName()));
    }
}

void TestWindowsComeBack::aWindowThatIsMadeByItselfStaysWhereItIs()
{
    const Fixture fixture;
    SettingsStore::write(applicationTitle(), QStringLiteral("Settings"),
                         QStringLiteral("Geometry main"), QStringLiteral("20 30 620 460"));
    const frmMain_KeldoX2 window;
    QVERIFY(window.size() != QSize(620, 460));
}

KELDOX_TEST(TestWindowsComeBack)
#include "TestWindowsComeBack.moc"
