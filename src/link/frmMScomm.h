// The hidden host window of one serial port object. Never shown.
#pragma once

#include "platform/CommControl.h"
#include "platform/TimerControl.h"

#include <QWidget>

class clsCommPort;

class frmMScomm : public QWidget
{
    Q_OBJECT

public:
    frmMScomm();

    // Back reference to the owner; null until it is set.
    clsCommPort *Parent() const { return m_parent; }
    void setParent(clsCommPort *owner) { m_parent = owner; }
    using QWidget::setParent;

    CommControl *const CommCtl;
    TimerControl *const tmrCommTimer2; // reply time-out
    TimerControl *const tmrCommTimer;  // short pauses

private:
    clsCommPort *m_parent = nullptr;
};
