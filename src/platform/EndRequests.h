// The system asks the program to end: SIGTERM, SIGINT or SIGHUP. Told from the event loop, so that
// the answer may do anything. Systems without these signals never ask.
#pragma once

#include <QObject>

class EndRequests : public QObject
{
    Q_OBJECT

public:
    // One at a time; the signals end the process as usual again when it goes.
    explicit EndRequests(QObject *parent = nullptr);
    ~EndRequests() override;

signals:
    void Requested();
};
