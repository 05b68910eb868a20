// What the tests of the main window share: the real window, shown, with a simulated unit at the end
// of a line that is COM 5, and recording windows beside it.
#pragma once

#include "app/AppState.h"
#include "device/UnitFixture.h"
#include "platform/EventQueue.h"
#include "support/FakeChannelRow.h"
#include "ui/main/StepSlider.h"
#include "ui/main/clsPelltrim.h"
#include "ui/main/clsPresetButton.h"
#include "ui/main/frmMain_KeldoX2.h"
#include "widgets/IndicatorLight.h"
#include "widgets/PanelStatusBar.h"
#include "widgets/WhileDisabled.h"

#include <QtWidgets>

// A channels window with the boxes that the main window empties.
class BoxedChannelsWindow : public QWidget, public FakeChannelsWindow
{
public:
    BoxedChannelsWindow()
    {
        setObjectName(QStringLiteral("frmChannels"));
        for (int channel = 1; channel <= 8; ++channel)
            for (const char *name : {"txtChanFreq_%1", "txtChanAtten_%1", "txtChanInputAtten_%1",
                                     "txtChanAGCoffset_%1"}) {
                auto *box = new QLineEdit(QStringLiteral("full"), this);
                box->setObjectName(QString::fromLatin1(name).arg(channel));
            }
    }

    void clearChannelBoxes(int channel) override
    {
        for (const char *name : {"txtChanFreq_%1", "txtChanAtten_%1", "txtChanAGCoffset_%1"})
            box(name, channel)->clear();
    }

    QString text(const char *name, int channel) const { return box(name, channel)->text(); }

private:
    QLineEdit *box(const char *name, int channel) const
    {
        return findChild<QLineEdit *>(QString::fromLatin1(name).arg(channel));
    }
};

// After "the program" has ended once, Qt's own loops start only when the application runs again.
inline void letLoopsRunAgain()
{
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
    QApplication::exec();
}

class MainBench
{
public:
    static constexpr int port = 5;

    MainBench()
    {
        letLoopsRunAgain();
        AppState &state = app();
        state.makers.channelsWindow = [this] { return channels; };
        state.makers.ioMonitor = [this] { return monitor; };
        installEventLog(log);
        for (std::int16_t number = 1; number <= 8; ++number)
            state.channels[number] = std::make_shared<FakeChannelRow>(number);
        window = std::make_shared<frmMain_KeldoX2>();
        state.mainWindow = window;
        window->load();
    }

    // The window as the operator sees it after start-up: shown, and its event guard up.
    void show()
    {
        window->show();
        QTRY_VERIFY(app().guard().isUp());
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }

    template <class Control> Control *find(const char *name) const
    {
        auto *control = window->findChild<Control *>(QString::fromLatin1(name));
        if (!control)
            QTest::qFail(name, __FILE__, __LINE__);
        return control;
    }
    QLineEdit *frequency() const { return find<QLineEdit>("txtCurrentFreq"); }
    StepSlider *slider() const { return find<StepSlider>("HScroll1"); }
    QString caption(const char *label) const { return find<QLabel>(label)->text(); }
    QString panel(int number) const { return find<PanelStatusBar>("StatusBar")->panelText(number); }
    QColor light() const { return find<IndicatorLight>("ShapeStatusLight")->fillColor(); }
    QAction *entry(const char *name) const { return find<QAction>(name); }
    TimerControl *polling() const { return find<TimerControl>("tmrPollingTimer"); }

    Fixture fixture;
    std::shared_ptr<BoxedChannelsWindow> channels = std::make_shared<BoxedChannelsWindow>();
    std::shared_ptr<FakeIOMonitor> monitor = std::make_shared<FakeIOMonitor>();
    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    std::shared_ptr<frmMain_KeldoX2> window;
    ExpectedBoxes &boxes() { return fixture.boxes; }
};

// 100 to 110 MHz in steps of 25 kHz.
inline sim::UnitSettings smallUnit()
{
    return unitWithFirmware("3.38");
}

class ConnectedBench : public MainBench
{
public:
    explicit ConnectedBench(const sim::UnitSettings &settings = smallUnit())
        : simulated(std::make_shared<sim::SimulatedUnit>(settings))
    {
        line.setResponder([units = simulated, scripted = script](const std::string &command) {
            return scripted->answer(*units, command);
        });
        fixture.plug(port, line.device());
        show();
        channels->selected = 2;
        connectUnit();
    }

    ~ConnectedBench() { unit->commPort()->ClosePort(); }

    // As selecting a channel does: with the guard down.
    void connectUnit()
    {
        unit->setConnection(clsKeldoX::SerialPort);
        unit->commPort()->setPortNumber(port);
        app().guard().set(false);
        window->setDevice(unit);
        QVERIFY(unit->Initialize());
        app().guard().set(true);
        unit->commPort()->settimeOutMs(3000);
        line.clearCommands();
    }

    void reply(const std::string &command, const std::optional<std::string> &text)
    {
        script->set(command, text);
    }

    QStringList sent() { return commandsSent(*unit, line); }

    void type(const QString &text)
    {
        frequency()->setFocus();
        frequency()->selectAll();
        QTest::keyClicks(frequency(), text);
    }
    void enter(const QString &text)
    {
        type(text);
        QTest::keyClick(frequency(), Qt::Key_Return);
    }

    // Runs the action once, while the reply to the next command is awaited.
    void whileWaiting(std::function<void()> action)
    {
        QTimer::singleShot(0, window.get(), std::move(action));
    }

    sim::SimulatedLine line;
    std::shared_ptr<sim::SimulatedUnit> simulated;
    std::shared_ptr<Script> script = std::make_shared<Script>();
    std::shared_ptr<clsKeldoX> unit = makeUnit();
};

// The middle of a scroll bar's thumb, and of the groove to the right of it.
inline QPoint thumbOf(const QScrollBar &bar, QStyle::SubControl part = QStyle::SC_ScrollBarSlider)
{
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.subControls = QStyle::SC_All;
    option.orientation = bar.orientation();
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.sliderPosition = bar.sliderPosition();
    option.sliderValue = bar.value();
    option.singleStep = bar.singleStep();
    option.pageStep = bar.pageStep();
    option.state |= QStyle::State_Horizontal;
    return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, part, &bar).center();
}

// Moves the pressed mouse as a hand does, in events that the bar sees.
inline void dragTo(QWidget &bar, const QPoint &place)
{
    QMouseEvent move(QEvent::MouseMove, place, bar.mapToGlobal(QPointF(place)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&bar, &move);
}
