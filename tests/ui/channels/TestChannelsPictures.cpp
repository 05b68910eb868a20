// The channels window as the operator sees it in its states: nothing is cut off or overlaps. With
// KELDOX_PICTURES set to a folder it leaves the pictures there.
#include "ChannelsBench.h"

#include <QTabWidget>

class TestChannelsPictures : public QObject
{
    Q_OBJECT

private slots:
    void states_data();
    void states();
    void smallestWindow();
    void nothingMovesWhenUnitsCome();
};

static void darken()
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Button, QColor(60, 60, 64));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, QColor(230, 230, 230));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(120, 120, 120));
    dark.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
    QApplication::setPalette(dark);
}

static void savePicture(QWidget &window, const QString &name)
{
    const QString folder = qEnvironmentVariable("KELDOX_PICTURES");
    if (!folder.isEmpty())
        QVERIFY(window.grab().save(folder + QLatin1Char('/') + name + QStringLiteral(".png")));
}

// Visible controls have their full size, stand inside their window and beside each other.
static void checkLayout(const QWidget &window)
{
    QList<QWidget *> shown;
    const auto all = window.findChildren<QWidget *>();
    for (QWidget *control : all)
        if (control->isVisible() && !control->objectName().isEmpty() &&
            (qobject_cast<QLineEdit *>(control) || qobject_cast<QAbstractButton *>(control) ||
             qobject_cast<UpDown *>(control) || qobject_cast<QLabel *>(control)) &&
            !control->objectName().startsWith(QStringLiteral("StatusBar")) &&
            !qobject_cast<UpDown *>(control->parentWidget()))
            shown.append(control);
    const auto place = [&](const QWidget *control) {
        return QRect(control->mapTo(&window, QPoint()), control->size());
    };
    for (const QWidget *control : shown) {
        QVERIFY2(window.rect().contains(place(control)), qPrintable(control->objectName()));
        QVERIFY2(control->height() >= control->minimumSizeHint().height(),
                 qPrintable(control->objectName()));
        QVERIFY2(control->width() >= control->minimumSizeHint().width(),
                 qPrintable(control->objectName()));
        for (const QWidget *other : shown)
            if (other != control && other->parent() == control->parent())
                QVERIFY2(!place(control).intersects(place(other)),
                         qPrintable(control->objectName() + other->objectName()));
    }
}

void TestChannelsPictures::states_data()
{
    QTest::addColumn<QString>("state");
    for (const char *state : {"no-unit", "searching", "connected", "agc-on", "options", "dark",
                              "second-tab", "third-tab", "failed"})
        QTest::newRow(state) << state;
}

static void connectThree(ChannelsBench &b)
{
    sim::UnitSettings settings = ChannelsBench::fullUnit();
    settings.step = 1860;
    settings.attenuation = 12.5;
    settings.inputAttenuation = 3;
    settings.bypass = true;
    b.connected(2, ChannelsBench::unitWith(sim::OptionAttenuator15, false));
    b.connected(3);
    b.connected(1, settings);
    b.window->setStatusPanel(4, QStringLiteral("3 UNITS FOUND"));
}

void TestChannelsPictures::states()
{
    QFETCH(QString, state);
    const QPalette usual = QApplication::palette();
    if (state == QStringLiteral("dark"))
        darken();
    ChannelsBench b;
    auto *tabs = b.window->findChild<QTabWidget *>(QStringLiteral("tabsChannels"));
    if (state == QStringLiteral("searching")) {
        b.window->setProgressMaximum(516);
        b.window->setProgressVisible(true);
        b.window->setProgress(180);
        b.bind(1);
        b.window->setStatusPanel(1, QStringLiteral("CONNECTING..."));
    } else if (state == QStringLiteral("options")) {
        b.connected(1, ChannelsBench::unitWith(0, false));
        b.connected(2, ChannelsBench::unitWith(sim::OptionInputAttenuator, true));
        b.connected(3, ChannelsBench::unitWith(sim::OptionAttenuator15, true));
        b.connected(4, ChannelsBench::unitWith(sim::OptionAgc, false));
    } else if (state == QStringLiteral("failed")) {
        connectThree(b);
        b.lines[3]->setFault(sim::Fault::Garbage);
        b.fixture.boxes.acceptAll();
        b.select(3);
    } else if (state == QStringLiteral("second-tab")) {
        b.bind(5);
        tabs->setCurrentIndex(1);
        b.select(5);
    } else if (state == QStringLiteral("third-tab")) {
        tabs->setCurrentIndex(2);
    } else if (state != QStringLiteral("no-unit")) {
        connectThree(b);
    }
    if (state == QStringLiteral("agc-on"))
        b.click(b.check("chkChanAGC"));
    QTest::qWait(0);
    checkLayout(*b.window);
    savePicture(*b.window, QStringLiteral("channels-") + state);
    QApplication::setPalette(usual);
}

void TestChannelsPictures::smallestWindow()
{
    ChannelsBench b;
    connectThree(b);
    b.window->resize(1, 1);
    QTest::qWait(0);
    QVERIFY(b.window->width() < 400); // its content scrolls
    checkLayout(*b.find<QLabel>("lblChannel", 0)->parentWidget());
    savePicture(*b.window, QStringLiteral("channels-smallest"));
    b.window->resize(1600, 500);
    QTest::qWait(0);
    checkLayout(*b.window);
    savePicture(*b.window, QStringLiteral("channels-wide"));
}

void TestChannelsPictures::nothingMovesWhenUnitsCome()
{
    ChannelsBench b;
    const auto places = [&] {
        QList<QPoint> all;
        for (const char *header : {"lblChannel", "lblChanFreq", "lblChanAtten", "lblChanInputAtten",
                                   "lblChanAGC", "lblChanAGCOffset", "lblChanBypass"})
            all.append(b.find<QLabel>(header, 0)->mapTo(b.window.get(), QPoint()));
        return all;
    };
    const auto before = places();
    const QSize size = b.window->size();
    connectThree(b);
    QTest::qWait(0);
    QCOMPARE(places(), before);
    QCOMPARE(b.window->size(), size);
    // Rows stand at equal distances under the headers.
    const auto top = [&](int index) {
        return b.box("txtChanFreq", index)->mapTo(b.window.get(), QPoint()).y();
    };
    QCOMPARE(top(3) - top(2), top(2) - top(1));
    const auto *header = b.find<QLabel>("lblChanFreq", 0);
    QVERIFY(top(1) > before.at(1).y() + header->height());
}

KELDOX_TEST(TestChannelsPictures)
#include "TestChannelsPictures.moc"
