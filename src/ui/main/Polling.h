// The polling timer of the main window, its check entry and its interval.
#pragma once

#include "platform/TimerControl.h"

class QAction;

namespace Ui {
class frmMain_KeldoX2;
}

class Polling : public QObject
{
    Q_OBJECT

public:
    // The window is the timer's parent.
    Polling(const Ui::frmMain_KeldoX2 &ui, QObject *window);

    void stop() { tmrPollingTimer.setEnabled(false); }
    void restartIfChecked();
    void begin(); // with the first interval, if checked

private:
    void mnuEnablePolling_Click();
    void mnuPollingInterval_Click();

    QAction *mnuEnablePolling;
    TimerControl tmrPollingTimer;
};
