// One channel: binds a unit to its row of controls in the channels window. It shows what the
// unit's options allow, sends the operator's edits to the unit and follows the unit's events.
//
// Handlers without an error trap of their own raise their errors to the window's handler, which
// reports them; 91 is raised where there is no unit or no row yet.
#pragma once

#include "app/Views.h"
#include "core/Presence.h"
#include "device/UnitValue.h"
#include "ui/channels/ChannelControls.h"
#include "ui/channels/ChannelsHost.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class Levels;
class clsKeldoX;

class clsChannel : public QObject,
                   public ChannelRow,
                   public std::enable_shared_from_this<clsChannel>
{
    Q_OBJECT

public:
    // Gives the channels window, loading it if need be; asked when the channel gets its index.
    using HostSource = std::function<std::shared_ptr<ChannelsHost>()>;

    static constexpr int enterKeyCode = 13;
    static constexpr double maximumInputAttenuation = 31.5; // dB

    explicit clsChannel(HostSource host);

    // The owner; calling order InitChannel, Index, Device, ShowControls.
    void InitChannel() override;                // the options will be read anew
    void setIndex(std::int16_t index) override; // also sets the channel number
    std::int16_t Index() const { return m_index; }
    void setChannelNumber(std::int16_t number) override { m_channelNumber = number; }
    std::int16_t ChannelNumber() const { return m_channelNumber; }
    std::shared_ptr<clsKeldoX> Device() const override { return m_device; }
    void setDevice(std::shared_ptr<clsKeldoX> device) override; // null: no unit
    int ComPortNumber() const override;                         // 0 without a unit
    void setComPortNumber(int number) override;
    void showPort(const QString &caption, const QString &toolTip, const QString &text) override;
    void setStatus(int status) override;

    void getOptions(); // asks the unit for what is not known yet
    void ShowControls() override;
    void readAgain() override;
    void EnableOrDisableControlsAsAppropriate();
    void DisableControls() override; // the port option stays: it connects again
    void HideControls() override;

    // Kept for the caller.
    bool AGC_Active() const { return m_agcActive; }
    void setAGC_Active(bool active) { m_agcActive = active; }
    int Options() const { return m_callersOptions; }
    void setOptions(int options) { m_callersOptions = options; }
    bool HasAGC() const { return m_options.hasAGC; }
    void setHasAGC(bool fitted) { m_options.hasAGC = fitted; }
    bool HasAtten() const { return m_options.hasAtten; }
    void setHasAtten(bool fitted) { m_options.hasAtten = fitted; }
    bool IsActive() const { return m_isActive; }
    void setIsActive(bool active) { m_isActive = active; }
    bool Exists() const { return m_exists; }
    void setExists(bool exists) override { m_exists = exists; }

    // The operator, forwarded by the window.
    void txtChanAttenKeyUp(int keyCode);
    void txtChanInputAttenKeyUp(int keyCode);
    void txtChanAGCoffsetKeyUp(int keyCode);
    void udAttenDownClick();
    void udAttenUpClick();
    void udInputAttenDownClick(); // steps by the output attenuation's step
    void udInputAttenUpClick();
    void udAGCOffsetDownClick();
    void udAGCOffsetUpClick();
    void chkChanBYPClick();
    void chkChanAGCClick();
    void optPortNumClick() override; // connects this channel's unit

    // The unit's events.
    void m_Device_AGCChange(bool agcOn);
    void m_Device_FreqChange(qint32 step, double freqMHz);
    void m_Device_AttenChange(double decibels);
    void m_Device_InputAttenChange(double decibels);
    void m_Device_BypassChange(bool on);
    void m_Device_AGCOffsetChange(double decibels);
    void m_Device_DUTChange();
    void m_Device_ConfirmationChange(UnitValue value, bool confirmed);

private:
    struct UnitOptions
    {
        bool hasAtten = false;
        bool hasInputAtten = false;
        bool hasAGC = false;
        bool hasAGCOffset = false;
        bool hasBypass = false;
        bool stepsAreGood = false;     // maximum and step were told
        double maximumAttenuation = 0; // dB
        double attenuationStep = 0;    // dB
    };
    using Setting = void (Levels::*)(double decibels);

    std::shared_ptr<clsKeldoX> unit() const;
    // Its controls, taken out of the window when first needed.
    const ChannelRowControls &row();
    double offsetOf(clsKeldoX &device) const;
    double inputAttenuationOf(clsKeldoX &device) const;
    void followEvents();
    void readOptionsOnce();
    void readSteps(clsKeldoX &device, UnitOptions &options) const;
    void readInputAttenuation(clsKeldoX &device);
    void tell(QLineEdit &box, double value);
    void clearRow();
    void loseUnit();
    void enableLevels(bool agcOn, bool offsetEnabled);
    void showOffset(clsKeldoX &device);
    void showWhatNoEventTells(clsKeldoX &device);
    void sendTyped(int keyCode, const QLineEdit &box, Setting setting);
    void stepBy(UpDown &arrows, QLineEdit &box, double change, double lowest, double highest,
                Setting setting);

    HostSource m_hostSource;
    // The window that its row stands in; null before it has an index. Keeps the window's controls
    // as long as this channel refers to them.
    std::shared_ptr<ChannelsHost> m_host;
    std::optional<ChannelRowControls> m_row;
    std::shared_ptr<clsKeldoX> m_device;
    Presence m_bound;   // of the unit in the channel
    Presence m_enabled; // of a row that is switched on

    std::int16_t m_index = 0;
    std::int16_t m_channelNumber = 0;
    bool m_isActive = false;
    bool m_exists = false;
    int m_callersOptions = 0;
    bool m_agcActive = false;

    UnitOptions m_options;
    bool m_optionsRead = false;
    double m_maximumInputAttenuation = maximumInputAttenuation;

    bool m_unitAnswered = false; // since the last try to connect
    // It could not be connected or its link was lost: it is not asked and not shown before the next
    // try.
    bool m_unitIsGone = false;
};
