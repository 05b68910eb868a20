// The splash window of start-up: the program's name and how far start-up has come.
#pragma once

#include "app/Views.h"
#include "platform/TimerControl.h"

#include <QWidget>

class QProgressBar;

class frmSplash : public QWidget, public SplashView
{
    Q_OBJECT

public:
    frmSplash();

    void show() override;
    void advance() override;
    // True when four seconds are over. The window does not close itself.
    bool ReadyToClose() const override { return m_readyToClose; }
    void setReadyToClose(bool ready) { m_readyToClose = ready; }
    void unload() override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void layOut();
    void tmrSplash_Timer();

    QProgressBar *m_progress = nullptr;
    TimerControl m_tmrSplash;
    bool m_readyToClose = false;
};
