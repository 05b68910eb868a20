// One exchange with the unit: a command line out and a reply line back over its serial port,
// judged, told to the operator and announced. Most properties of a unit have one of two shapes, a
// query or a setting, and give it their data; one that departs from its shape is written out over
// the same parts.
//
// Common to all: with the port closed, writes send nothing and reads give 0, False or an empty
// text, but set-up values give what the connection has read. A bad reply leaves the member as it
// was, gives status 2 and, while DisplayErrors is on, a message box. Run-time errors are reported
// and never leave the unit. The unit lives to the end of what it does, whoever drops it while it
// waits.
#pragma once

#include "core/ResumeNext.h"
#include "device/ReplyText.h"
#include "device/Setup.h"
#include "device/UnitEvents.h"
#include "port/clsCommPort.h"

#include <QMap>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

// Without trailing blanks, CR and LF.
struct Reply
{
    QString text;
    bool complete = false; // one line, ended by its carriage return

    // What may be judged: half a reply may look like another whole one.
    QString whole() const { return complete ? text : QString(); }
};

class Exchange
{
public:
    // Values of Connection. Only the serial port carries lines.
    enum Transport : std::int32_t { NoTransport = 0, SerialPort = 1, Network = 2 };

    // What a query gives that is not sent, on a closed port or to a unit that does not offer it.
    // A set-up value is 0 until the connection has read it.
    enum Unasked { GivesZero, GivesSetUpValue, GivesLastReading };
    // How a property's own event and StatusChange follow a reply.
    enum Announcing { EventThenStatus, GoodEventThenStatus, StatusThenEvent, EventWithoutStatus };

    using Test = ReplyText::Test;

    struct Query
    {
        const char *source; // of the report of a failure
        const char *command;
        Test isGood;
        const char *message = nullptr;        // of the box for a bad reply; nullptr for none
        std::function<bool()> isOffered = {}; // asked on an open port; empty: by every unit
        std::function<void()> event = {};
        Announcing announcing = EventThenStatus;
        Unasked unasked = GivesZero;
        bool mayBeRefused = false; // a refusal asks for the password; else it is a bad reply
        std::optional<UnitValue> value = {}; // that a good reply confirms
    };

    struct Setting
    {
        const char *source;
        QString line;
        Test isGood; // keeps what the reply confirms
        const char *message = nullptr;
        std::function<bool()> isOffered = {};
        std::function<void()> event = {};
        Announcing announcing = EventThenStatus;
        bool mayBeRefused = true;
        std::optional<UnitValue> value = {}; // that nobody knows after a bad reply
    };

    explicit Exchange(UnitEvents &events) : m_events(events) {}

    std::int32_t Connection() const { return m_connection; }
    void setConnection(std::int32_t transport) { m_connection = transport; }
    void setDisplayErrors(bool display) { m_displayErrors = display; }
    bool displaysErrors() const { return m_displayErrors; }
    std::int32_t lastStatus() const { return m_lastStatus; }
    QString lastReply() const { return m_lastReply; }
    // The last command got not one byte. Who asks several counts whether any of them did.
    bool fellSilent() const { return m_fellSilent; }
    int silences() const { return m_silences; }
    Setup &setup() { return m_setup; }
    const Setup &setup() const { return m_setup; }

    // The serial port object, made on first use. Never null.
    std::shared_ptr<clsCommPort> commPort();
    bool PortIsOpen();
    // The port is open, and no exchange waits on it: in the middle of one it is as closed.
    bool canSend();

    // The connection that is being made has failed: the port closes, a wait ends, no box follows.
    void cancelInitialize();

    // A switch whose reading was bad is shown as it was before, or off: nobody knows.
    void doubt(UnitValue value);
    // A value that was set but not confirmed, or a switch that could not be read, until it is read.
    bool isUnconfirmed(UnitValue value) const { return m_unconfirmed.contains(value); }
    void confirm(std::optional<UnitValue> value);
    // By the status and the completeness of a setting's reply.
    void judgeConfirmation(std::optional<UnitValue> value, std::int32_t status, bool complete);

    // Sends one command line (without its carriage return); an empty reply on a closed port, what
    // had arrived after a time-out. Stops polling.
    Reply send(const QString &command);
    QString deviceWrite(const QString &command) { return send(command).text; }

    // Held by whatever touches the unit after a wait.
    std::shared_ptr<UnitEvents> keepAlive() const { return m_events.weak_from_this().lock(); }

    // The two shapes. A query gives the member as its reply left it, a setting its status; one that
    // was not sent gives the last status.
    template <class Value> Value query(const Query &asked, Value &member);
    std::int32_t set(const Setting &setting);
    // Factory settings are not judged, raise nothing and change no member.
    void writeFactory(const char *source, const QString &command, double value);

    // Frames of what is written out: the body runs on an open port, the unit lives to its end, and
    // its failure is reported. A reading gives the member afterwards, 0 on a closed port.
    template <class Body> void run(const char *source, Body &&body);
    template <class Value, class Body>
    Value reading(const char *source, const Value &member, Body &&body);

    // Parts of what is written out. A number beyond its member's range is as bad as none.
    static bool isGood(const Reply &reply, const Test &test);
    std::int32_t judge(const Reply &reply, bool good, const char *message,
                       bool mayBeRefused = true);
    std::int32_t keep(std::int32_t status) { return m_lastStatus = status; }
    // Keeps the status and tells the operator.
    std::int32_t reject(const char *message, std::int32_t status = UnitEvents::BadReply);
    void complain(const char *message);
    void finish(std::int32_t status); // keeps the status and raises StatusChange

    // The unit is read in from here on, and no longer: a silent one is given up, and told of in the
    // end.
    void beginReadingIn();
    void endReadingIn();

private:
    void noteSilence(bool silent);
    void showComplaint(const QString &message);
    bool mayAsk(const std::function<bool()> &isOffered);
    bool givesMember(Unasked unasked) const;
    void ask(const Query &asked, const Test &test);
    void announce(std::int32_t status, const std::function<void()> &event, Announcing announcing);
    void logBadReply() const;
    void onHungUp();

    UnitEvents &m_events;
    std::shared_ptr<clsCommPort> m_port;
    std::int32_t m_connection = NoTransport;
    bool m_displayErrors = true;
    std::int32_t m_lastStatus = UnitEvents::Good;
    QString m_lastReply;
    bool m_fellSilent = false;
    int m_silences = 0;
    QString m_deferred; // the complaint of a first silence: a second one makes it another
    QMap<UnitValue, bool> m_unconfirmed; // whether a late answer may still come
    Setup m_setup;
};

template <class Value> Value Exchange::query(const Query &asked, Value &member)
{
    const auto unit = keepAlive();
    if (!mayAsk(asked.isOffered))
        return givesMember(asked.unasked) ? member : Value{};
    ask(asked, [&](const QString &reply) {
        if (!asked.isGood(reply))
            return false;
        ReplyText::take(reply, member);
        return true;
    });
    return member;
}

template <class Body> void Exchange::run(const char *source, Body &&body)
{
    const auto unit = keepAlive();
    if (canSend())
        reportAndEnd(source, std::forward<Body>(body));
}

template <class Value, class Body>
Value Exchange::reading(const char *source, const Value &member, Body &&body)
{
    const auto unit = keepAlive();
    if (!canSend())
        return {};
    reportAndEnd(source, std::forward<Body>(body));
    return member;
}
