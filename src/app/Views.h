// What connecting and searching tell the windows, who stand above them: each view has just the
// operations that those callers use. The windows implement them; tests put fakes in their place.
#pragma once

#include "core/EventLog.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

class clsKeldoX;

class MainWindowView
{
public:
    virtual ~MainWindowView() = default;

    virtual void load() = 0; // Form_Load, without showing
    virtual void show() = 0;

    // The unit whose events the window follows; never null.
    virtual void setDevice(std::shared_ptr<clsKeldoX> device) = 0;
    virtual std::shared_ptr<clsKeldoX> device() const = 0;

    virtual void stopPolling() = 0;             // switches tmrPollingTimer off
    virtual void restartPollingIfChecked() = 0; // and on again when mnuEnablePolling is checked

    virtual void setStatusPanel(int panel, const QString &text) = 0;
    virtual void setCurrentChannelCaption(const QString &text) = 0;
    virtual void EnablePresetsIfTheyreValid() = 0;

    // Before a search: empties the displays, disables the controls, Pelltrim included, and turns
    // both lights off.
    virtual void resetForSearch() = 0;
    // After a search: the controls follow what is connected now.
    virtual void bringUpToDate() = 0;
    // The communication light turns red: no unit answers, or the operator did not wait for one.
    virtual void showCommunicationFailure(bool cancelled) = 0;
    // No unit is connected (any more): frequency displays empty, unit controls disabled.
    virtual void showNotConnected() = 0;
    // Of the unit that is shown, as it was read; nothing: not known.
    virtual void showInputAttenuation(std::optional<double> decibels) = 0;

    // What a search or a connection is at; empty when none runs.
    virtual void showProgressLine(const QString &text) = 0;

    // Closes the window, and with it the program.
    virtual void unload() = 0;
};

class ChannelsView
{
public:
    virtual ~ChannelsView() = default;

    virtual void load() = 0;
    virtual void show() = 0;

    virtual void setDevice(std::shared_ptr<clsKeldoX> device) = 0;

    virtual void setStatusPanel(int panel, const QString &text) = 0;
    // The panels say so, and nothing of a unit stands in them.
    virtual void showNotConnected() = 0;
    virtual void setProgress(int value) = 0;
    virtual void setProgressMaximum(int maximum) = 0;
    virtual int progressMaximum() const = 0;
    virtual void setProgressVisible(bool visible) = 0;

    // Hides every row's controls and selects no channel.
    virtual void prepareForSearch() = 0;
    // Shows the tab of the first unit.
    virtual void arrangeForUnitsFound() = 0;
    // Writes the connected channel's values into its row.
    virtual void refreshChannelDisplays() = 0;

    // The first channel whose port option is selected, 0 when none is.
    virtual int ChanIndex() const = 0;

    // Escape was pressed since clearEscape.
    virtual bool escapePressed() const = 0;
    virtual void clearEscape() = 0;

    // What a search or a connection is at; empty when none runs.
    virtual void showProgressLine(const QString &text) = 0;

    // Empties frequency, attenuation and AGC offset of the channel's row.
    virtual void clearChannelBoxes(int channel) = 0;
};

// One of the channels 1 to 8: a unit bound to a row of controls.
class ChannelRow
{
public:
    virtual ~ChannelRow() = default;

    virtual void InitChannel() = 0;
    virtual void setIndex(std::int16_t index) = 0;
    virtual void setChannelNumber(std::int16_t number) = 0;
    virtual std::shared_ptr<clsKeldoX> Device() const = 0;
    virtual void setDevice(std::shared_ptr<clsKeldoX> device) = 0;
    virtual int ComPortNumber() const = 0;
    virtual void setComPortNumber(int number) = 0;
    virtual void setExists(bool exists) = 0;

    // Option button's caption and tool tip, port label's text; makes both visible.
    virtual void showPort(const QString &caption, const QString &toolTip, const QString &text) = 0;
    // 1 selects the port option button without running its click, 0 deselects it.
    virtual void setStatus(int status) = 0;

    virtual void optPortNumClick() = 0;
    virtual void ShowControls() = 0;
    virtual void readAgain() = 0; // asks the unit for the values that the row shows
    virtual void DisableControls() = 0;
    virtual void HideControls() = 0;
};

class IOMonitorView : public EventDisplay
{
public:
    virtual void load() = 0; // hidden
    virtual void show() = 0;
    // Closes the port of the window's own seeker.
    virtual void closeComPort() = 0;
};

class SplashView
{
public:
    virtual ~SplashView() = default;

    virtual void show() = 0;    // and paints at once
    virtual void advance() = 0; // one channel binding more is ready
    virtual bool ReadyToClose() const = 0;
    virtual void unload() = 0;
};
