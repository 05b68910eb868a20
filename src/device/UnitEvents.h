// What a unit tells the windows.
#pragma once

#include "device/UnitValue.h"

#include <QObject>

#include <cstdint>
#include <memory>

class UnitEvents : public QObject, public std::enable_shared_from_this<UnitEvents>
{
    Q_OBJECT

public:
    // Codes of StatusChange. There is no code 1.
    enum Status : std::int32_t {
        Good = 0,
        BadReply = 2,
        Unlocked = 3,
        LockedAfterStep = 4,
        Refused = 5,
    };

signals:
    void FreqChange(qint32 step, double freqMHz);
    void QuickFreqChange(qint32 step, double freqMHz);
    void AGCChange(bool on);
    void AGCOffsetChange(double decibels);
    void AttenChange(double decibels);
    void InputAttenChange(double decibels);
    void DUTChange();
    void StatusChange(qint32 status);
    void DUTError(bool error);
    void ZNChange(qint16 setting);
    void BypassChange(bool on);
    void ZNcalModeChange(bool &on);
    void GetPassword();
    void InputLimitingModeChange(qint16 mode);

    // False: a setting got no good reply, so nobody knows what the unit has. True: it was read
    // again.
    void ConfirmationChange(UnitValue value, bool confirmed);

    // A command is about to be sent. Polling stops on it, and only its owner starts it again.
    void AboutToExchange();
    // The unit's port hung up; the object stays usable and opens it again when initialized.
    void LinkLost();
};
