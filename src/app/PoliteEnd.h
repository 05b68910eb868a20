// Whoever asks the program to end, it ends as by closing its main window: ports closed, settings
// kept, every wait, box and dialog falling through. The askers are the system's signals, the end of
// the desktop session, and Qt's own quit.
#pragma once

#include "platform/EndRequests.h"

class PoliteEnd : public QObject
{
    Q_OBJECT

public:
    PoliteEnd();
    ~PoliteEnd() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static void end();

    EndRequests m_requests;
};
