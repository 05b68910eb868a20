// The real channels window with its eight rows over simulated units, as start-up and a search
// leave them, and the boxes and the log of the run.
#pragma once

#include "app/AppState.h"
#include "device/clsKeldoX.h"
#include "sim/SimulatedLine.h"
#include "sim/SimulatedUnit.h"
#include "support/FakeViews.h"
#include "support/Fixture.h"
#include "support/TestMain.h"
#include "ui/channels/clsChannel.h"
#include "ui/channels/frmChannels.h"
#include "windowMakers.h"

#include <map>

class ChannelsBench
{
public:
    explicit ChannelsBench(bool shown = true)
    {
        AppState &state = app();
        state.mainWindow = mainWindow;
        mainWindow->setDevice(std::make_shared<clsKeldoX>());
        const WindowMakers makers = windowMakers();
        state.makers.channelsWindow = makers.channelsWindow;
        for (std::int16_t index = 1; index <= 8; ++index) {
            state.channels[index] = makers.channel();
            state.channels[index]->setIndex(index);
        }
        window = std::dynamic_pointer_cast<frmChannels>(state.channelsWindow());
        installEventLog(log);
        state.guard().set(true);
        if (shown) {
            window->show();
            static_cast<void>(QTest::qWaitForWindowActive(window.get()));
        }
    }

    ~ChannelsBench()
    {
        window.reset();
        resetAppState();
    }

    // What a search does with a unit that it finds on a port of the channel's number.
    std::shared_ptr<clsKeldoX> bind(int channel, const sim::UnitSettings &settings = {})
    {
        auto &line = lines[channel];
        line = std::make_shared<sim::SimulatedLine>();
        units[channel] = std::make_shared<sim::SimulatedUnit>(settings);
        line->addUnit(units[channel]);
        fixture.plug(channel, line->device());
        const auto device = std::make_shared<clsKeldoX>();
        device->setConnection(clsKeldoX::SerialPort);
        app().devices[channel] = device;
        clsChannel &row = this->row(channel);
        row.InitChannel();
        row.setDevice(device);
        row.setComPortNumber(channel);
        row.showPort(QStringLiteral(" %1").arg(channel),
                     QStringLiteral("select the device on COM%1:").arg(channel),
                     QStringLiteral("COM%1:").arg(channel));
        return device;
    }

    // The operator clicks the channel's port option.
    void select(int channel) { click(find<QRadioButton>("optPortNum", channel)); }

    std::shared_ptr<clsKeldoX> connected(int channel, const sim::UnitSettings &settings = {})
    {
        const auto device = bind(channel, settings);
        select(channel);
        lines[channel]->clearCommands();
        return device;
    }

    clsChannel &row(int channel) const
    {
        return *std::dynamic_pointer_cast<clsChannel>(app().channels[channel]);
    }

    template <class Control> Control *find(const char *name, int index) const
    {
        return window->findChild<Control *>(
            QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(index));
    }
    QLineEdit *box(const char *name, int index = 1) const { return find<QLineEdit>(name, index); }
    QCheckBox *check(const char *name, int index = 1) const { return find<QCheckBox>(name, index); }
    UpDown *arrows(const char *name, int index = 1) const { return find<UpDown>(name, index); }
    QString panel(int number) const { return find<QLabel>("StatusBar", number)->text(); }

    QStringList sent(int channel = 1)
    {
        QStringList all;
        for (const std::string &command : lines[channel]->commands())
            all.append(QString::fromStdString(command));
        return all;
    }

    static void click(QAbstractButton *button)
    {
        QVERIFY2(button->isVisible(), qPrintable(button->objectName()));
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }
    void up(const char *name, int index = 1) const { press(name, index, "up"); }
    void down(const char *name, int index = 1) const { press(name, index, "down"); }

    // Types into a box and presses Enter.
    static void enter(QLineEdit *box, const QString &text, Qt::Key key = Qt::Key_Return)
    {
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, text);
        QTest::keyClick(box, key);
    }

    // Every control of a row, in reading order.
    static QStringList rowNames()
    {
        return QStringLiteral("optPortNum lblPortNum txtChanFreq txtChanAtten udAtten lbldB "
                              "txtChanInputAtten udInputAtten chkChanAGC txtChanAGCoffset "
                              "udAGCOffset lblAGCdB chkChanBYP")
            .split(QLatin1Char(' '));
    }
    // Names of the row's controls that are visible, or would be on their tab.
    QString visibleNames(int index = 1) const
    {
        return namesWith(index, [](const QWidget &control) { return !control.isHidden(); });
    }
    QString enabledNames(int index = 1) const
    {
        return namesWith(index, [](const QWidget &control) { return control.isEnabled(); });
    }

    // The boxes shown so far that name this source.
    int boxesFrom(const QString &source) const
    {
        int count = 0;
        for (const QString &text : fixture.boxes.texts())
            count += text.contains(QStringLiteral(" in ") + source + QStringLiteral("\r\n"));
        return count;
    }

    static sim::UnitSettings unitWith(int optionA, bool bypass = true,
                                      const std::string &firmware = "KELDO-X REV 3.38")
    {
        sim::UnitSettings settings;
        settings.optionA = optionA;
        settings.hasBypass = bypass;
        settings.firmware = firmware;
        return settings;
    }
    // AGC with its offset, input attenuator, bypass: everything a row can show.
    static sim::UnitSettings fullUnit()
    {
        return unitWith(sim::OptionAgc | sim::OptionAttenuatorA | sim::OptionInputAttenuator, true,
                        "KELDO-X REV 3.17");
    }

    Fixture fixture;
    std::shared_ptr<FakeMainWindow> mainWindow = std::make_shared<FakeMainWindow>();
    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    std::shared_ptr<frmChannels> window;
    std::map<int, std::shared_ptr<sim::SimulatedLine>> lines;
    std::map<int, std::shared_ptr<sim::SimulatedUnit>> units;

private:
    QString namesWith(int index, const std::function<bool(const QWidget &)> &has) const
    {
        QStringList names;
        for (const QString &name : rowNames())
            if (has(*find<QWidget>(qPrintable(name), index)))
                names.append(name);
        return names.join(QLatin1Char(' '));
    }

    void press(const char *name, int index, const char *button) const
    {
        auto *arrow = arrows(name, index)->findChild<QAbstractButton *>(QLatin1String(button));
        QVERIFY(arrow);
        QTest::mouseClick(arrow, Qt::LeftButton);
    }
};
