// The serial port object: the program's only path to a unit. Sends command lines, collects what
// comes back in a text buffer, and waits for the carriage return that ends a reply.
#pragma once

#include "core/Presence.h"
#include "port/frmMScomm.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

class clsCommPort : public QObject
{
    Q_OBJECT

public:
    enum Status : std::int32_t { Closed = 0, Open = 1, InUse = 2, Error = 3 };
    enum Mode : std::int32_t { Polling = 0, Event = 1 };

    clsCommPort();
    ~clsCommPort() override; // the port closes with its host window

    // "port_closed", "port_open", "port_already_in_use", "port_error".
    QString ComPortStatusString() const;
    std::int32_t ComPortStatus() const { return m_status; }
    bool IsOpen() const { return m_status == Open; }

    // Polling: waits read the port. Event: received characters arrive by themselves. Takes effect
    // at the next InitializePort.
    std::int32_t PortMode() const { return m_portMode; }
    void setPortMode(std::int32_t mode) { m_portMode = mode; }

    void setPollInterval(std::int16_t ms) { m_pollInterval = ms; } // between two reads of a wait
    void setPollTimeOutCount(std::int32_t count) { m_pollTimeOutCount = count; } // stored only
    void setPollDelay(std::int16_t ms) { m_pollDelay = ms; } // between command and waiting
    void settimeOutMs(std::int32_t ms) { m_timeOutMs = ms; } // reply time-out
    void setDisplayErrors(bool display) { m_displayErrors = display; }

    // The program's number of the port; values of 0 and below are ignored.
    std::int16_t PortNumber() const { return m_portNumber; }
    void setPortNumber(std::int16_t number);

    QString DebugInfo() const { return m_debugInfo; }
    void setDebugInfo(const QString &text) { m_debugInfo = text; }

    // Opens the port at 19200,N,8,1 with DTR on and RTS off. False when it could not be opened: the
    // status then says in use or error, and a box tells while DisplayErrors is on.
    bool InitializePort();
    // Why the last InitializePort failed: the cause and its remedy, for the operator. Empty after a
    // success, and for a number without a device.
    QString OpenFailure() const { return m_openFailure; }
    // Opens the port as it was set up before. Raises the serial control's errors.
    void OpenPort();
    void ClosePort(); // harmless on a closed port

    // Sends the text unchanged; the caller supplies the carriage return. On a closed port nothing
    // is sent, and a box tells while DisplayErrors is on.
    void SendString(const QString &text);

    // Send the command and wait for one or two carriage returns; the reply stays in Buffer. False
    // on a time-out, a port that closes or hangs up, a reply beyond longestReply, or the end of the
    // program. An empty command sends nothing and is True. While another exchange waits on this
    // port nothing is sent and the result is False; the log says so.
    bool WriteAndWaitForCr(const QString &command);
    bool WriteAndWaitFor2Crs(const QString &command); // waits 65535 ms at most

    // An exchange waits for its reply; the next one must not be begun in the middle of it.
    bool isBusy() const;
    static constexpr qsizetype longestReply = 65536; // characters

    struct WaitResult
    {
        int rounds = 0;
        bool timedOut = false;
    };
    // Mode 1 ends at the first carriage return, mode 2 at the second; any other waits out the time.
    WaitResult WaitForReply(int mode);

    // Everything received since the last clear.
    QString Buffer() const { return m_buffer; }
    void setBuffer(const QString &text) { m_buffer = text; }
    QString BufferStart() const;     // before the first CR; empty when there is none
    void CleanUpBuffer();            // drops everything up to and including the first CR
    std::int16_t BufferSize() const; // characters; raises 6 beyond 32767
    void ClearBuffer();

    // The serial control's events, forwarded by the host window.
    void DoOnComm();
    void DoHangUp();

    frmMScomm &host() { return *m_host; }

signals:
    // After a receive event: the characters that it brought, and how many bytes.
    void GotData(const QString &text, int count);
    // The device went away; the port is closed and its status 3. Raised once.
    void HungUp();

private:
    void openControl();
    void renewOpening();
    void sortOpenError();
    bool send(const QString &command, const Still &opening);
    void settle(const Still &opening);
    WaitResult waitForReply(int mode, const Still &opening);
    bool waitMustStop(const Still &opening) const;
    bool hasReply(int mode) const;
    bool takeLast(int mode, const Still &opening);
    bool refuseWhileBusy(const QString &command) const;
    void takeInput();
    void storeReceived(const QString &unit);
    void reportHangUp();
    void logSent(const QByteArray &bytes) const;
    void logReceived(const QByteArray &bytes) const;
    void logBytes(const QString &direction, qsizetype count, const QString &shown) const;

    static constexpr int recordSize = 101; // an event's bytes have the places 1 to 100

    std::unique_ptr<frmMScomm> m_host;
    CommControl *m_control;
    std::int32_t m_portMode = Polling;
    std::int32_t m_modeInUse = Polling; // as of the last InitializePort
    std::int32_t m_status = Closed;
    std::int16_t m_portNumber = -1;
    QString m_buffer;
    std::int16_t m_recordCount = 0; // bytes of the event that is taken over
    bool m_displayErrors = true;
    QString m_debugInfo;
    QString m_openFailure;
    std::int16_t m_pollInterval = 0;
    std::int32_t m_pollTimeOutCount = 200;
    std::int16_t m_pollDelay = 0;
    std::int32_t m_timeOutMs = 10000;
    Presence m_opening;              // renewed when the port is opened, closed or hangs up
    std::optional<Still> m_exchange; // the opening that an exchange is in progress on
    bool m_unsettled = false;        // a reply was missed: it may still come
    bool m_afterPassword = false;    // what the command sent last was
};
