// The host of one serial port object's controls. It was a window that was never shown; nothing of
// it needs to be one.
#pragma once

#include "platform/CommControl.h"
#include "platform/TimerControl.h"

#include <QObject>

class clsCommPort;

class frmMScomm : public QObject
{
    Q_OBJECT

public:
    frmMScomm();

    // What its label reads, for whoever comes across it in an object browser.
    static QString labelText();

    // Back reference to the owner; null until it is set.
    clsCommPort *Parent() const { return m_parent; }
    void setParent(clsCommPort *owner) { m_parent = owner; }
    using QObject::setParent;

    CommControl *const CommCtl;
    TimerControl *const tmrCommTimer2; // reply time-out
    TimerControl *const tmrCommTimer;  // short pauses

private:
    clsCommPort *m_parent = nullptr;
};
