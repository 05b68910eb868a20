// Why a serial port could not be opened, in words for the operator: what holds it or forbids it,
// and what to do about it.
#pragma once

#include "platform/RunTimeError.h"

#include <QSerialPort>
#include <QString>

// The error of an opening that failed: 8002 for a device that is gone, 8005 for one that another
// program holds, 8012 for one that may not be opened (no access right, or a lock file that nobody
// needs any more and that cannot be removed), 8015 for a line that cannot be set up.
RunTimeError portRefusal(const QString &device, QSerialPort::SerialPortError error,
                         const QString &systemText);

// The text for a device that may not be opened. Joining a group is advised where the device's group
// may use it (else it is empty here), and never if that group is root's own.
QString noAccessText(const QString &device, const QString &owner, const QString &group);

// The lock file that programs agree on for a device; empty where the system has no such folder.
QString lockFileOf(const QString &device);
