// The serial control over the line that carries its bytes.
#include "platform/CommControl.h"

#include "platform/EventQueue.h"
#include "platform/PortRefusal.h"
#include "platform/ProcessLine.h"
#include "platform/RunTimeError.h"
#include "platform/TestHooks.h"

#include <QHash>
#include <QPointer>

#include <algorithm>

namespace {

// A unit's command is a few dozen bytes: a queue of this size means that nobody takes them.
constexpr qint64 outputQueueLimit = 4096;

} // namespace

CommControl::CommControl(QObject *parent) : QObject(parent)
{
    carryBy(SerialLine::make());
}

void CommControl::carryBy(std::unique_ptr<SerialLine> line)
{
    if (m_line) {
        m_line->disconnect(this);
        m_line.release()->deleteLater(); // it may be telling something just now
    }
    m_line = std::move(line);
    connect(m_line.get(), &SerialLine::Arrived, this, &CommControl::takeReceived);
    connect(m_line.get(), &SerialLine::Gone, this, &CommControl::onGone);
}

// A closed port may be opened with another number, whose device is of another kind.
void CommControl::carryFor(const PortDirectory::Device &device)
{
    if (device.process == m_behind)
        return;
    carryBy(device.process ? std::make_unique<ProcessLine>(device.process) : SerialLine::make());
    m_behind = device.process;
}

void CommControl::setCommPort(int number)
{
    if (portOpen())
        throw RunTimeError(ErrorNumber::InvalidWhileOpen);
    if (number < 1)
        throw RunTimeError(ErrorNumber::InvalidPortNumber);
    m_commPort = number;
}

void CommControl::setSettings(const QString &settings)
{
    static const QHash<QString, QSerialPort::Parity> parities = {
        {QStringLiteral("N"), QSerialPort::NoParity},
        {QStringLiteral("E"), QSerialPort::EvenParity},
        {QStringLiteral("O"), QSerialPort::OddParity},
        {QStringLiteral("M"), QSerialPort::MarkParity},
        {QStringLiteral("S"), QSerialPort::SpaceParity}};
    static const QHash<QString, QSerialPort::StopBits> stops = {
        {QStringLiteral("1"), QSerialPort::OneStop},
        {QStringLiteral("1.5"), QSerialPort::OneAndHalfStop},
        {QStringLiteral("2"), QSerialPort::TwoStop}};

    const QStringList words = settings.split(QLatin1Char(','));
    bool ok = words.size() == 4;
    const int baud = ok ? words.at(0).toInt(&ok) : 0;
    const int bits = ok ? words.at(2).toInt(&ok) : 0;
    ok = ok && baud > 0 && bits >= 5 && bits <= 8 && parities.contains(words.at(1).toUpper()) &&
         stops.contains(words.at(3));
    if (!ok)
        throw RunTimeError(ErrorNumber::InvalidPropertyValue);
    m_settings = settings;
    m_lineSettings = {baud, parities.value(words.at(1).toUpper()),
                      static_cast<QSerialPort::DataBits>(bits), stops.value(words.at(3))};
}

void CommControl::setDTREnable(bool on)
{
    m_dtr = on;
    if (portOpen())
        m_line->setDataTerminalReady(on);
}

void CommControl::setRTSEnable(bool on)
{
    m_rts = on;
    if (portOpen())
        m_line->setRequestToSend(on);
}

int CommControl::inBufferCount() const
{
    const auto waiting = static_cast<int>(m_received.size());
    return m_eventBudget < 0 ? waiting : std::min(waiting, m_eventBudget);
}

void CommControl::discardInput()
{
    if (!portOpen()) {
        m_received.clear();
        return;
    }
    // Never one of QSerialPort's waits, with a time of 0 neither: on Windows they wait for another
    // thread and stop the window.
    takeReceived();
    if (!portOpen())
        return;
    // What nobody has seen may end in a carriage return whose line feed is still to come.
    m_afterCarriageReturn = m_afterCarriageReturn || m_line->holdsInput();
    m_line->clearInput();
    m_received.clear();
}

void CommControl::discardOutput()
{
    if (portOpen())
        m_line->clearOutput();
}

static int &openFault()
{
    static int errorNumber = 0;
    return errorNumber;
}

void TestHooks::failOpening(int errorNumber)
{
    openFault() = errorNumber;
}

static int &eventLimitInUse()
{
    static int bytes = CommControl::eventLimit;
    return bytes;
}

void TestHooks::limitCommEvents(int bytes)
{
    eventLimitInUse() = bytes > 0 ? bytes : CommControl::eventLimit;
}

void CommControl::setPortOpen(bool open)
{
    if (open && portOpen())
        throw RunTimeError(ErrorNumber::PortAlreadyOpen);
    if (open && openFault() != 0)
        throw RunTimeError(openFault());
    if (open)
        openPort();
    else if (portOpen())
        m_line->close();
    m_received.clear();
    m_afterCarriageReturn = false;
}

void CommControl::openPort()
{
    const auto device = PortDirectory::instance().find(m_commPort);
    if (EventQueue::ending() || !device)
        throw RunTimeError(ErrorNumber::InvalidPortNumber);
    // Opening a missing device would cost milliseconds for its lock file.
    if (!PortDirectory::instance().isPresent(m_commPort))
        throw portRefusal(device->location, QSerialPort::DeviceNotFoundError, {});

    carryFor(*device);
    m_line->open(device->location, m_lineSettings);
    m_deviceName = device->location; // QSerialPort cuts the folder off
    m_line->setDataTerminalReady(m_dtr);
    m_line->setRequestToSend(m_rts);
    m_line->clearInput();
    m_line->clearOutput();
}

qsizetype CommControl::unitLength() const
{
    const qsizetype waiting = inBufferCount();
    return m_inputLen > 0 ? std::min<qsizetype>(m_inputLen, waiting) : waiting;
}

QString CommControl::input()
{
    const qsizetype count = unitLength();
    QString text = QString::fromLatin1(m_received.constData(), count);
    m_received.remove(0, count);
    if (m_eventBudget > 0)
        m_eventBudget -= static_cast<int>(count);
    return text;
}

void CommControl::output(const QString &text)
{
    if (!portOpen())
        throw RunTimeError(ErrorNumber::ValidOnlyWhenOpen);
    const QByteArray bytes = text.toLatin1();
    if (m_line->bytesToWrite() + bytes.size() > outputQueueLimit)
        throw RunTimeError(ErrorNumber::DeviceBusy);
    m_line->write(bytes);
    if (portOpen()) // else the device went away under it
        emit BytesSent(bytes);
}

// Only appends: readyRead is not raised again while its own handler runs, so nothing that could
// yield may be called from here.
void CommControl::takeReceived()
{
    const QByteArray bytes = m_line->readAll();
    if (bytes.isEmpty())
        return;
    for (const char byte : bytes) {
        // The line feed of a CR LF belongs to the CR, wherever it arrives: it must not become
        // the first character of the next reply.
        const bool swallowed = byte == '\n' && m_afterCarriageReturn;
        m_afterCarriageReturn = byte == '\r';
        if (!swallowed && m_received.size() < m_inBufferSize)
            m_received.append(byte);
    }
    scheduleCommEvent();
    emit BytesReceived(bytes);
}

void CommControl::scheduleCommEvent()
{
    if (m_rThreshold < 1 || m_received.size() < m_rThreshold || m_eventScheduled)
        return;
    m_eventScheduled = true;
    QMetaObject::invokeMethod(this, &CommControl::raiseCommEvent, Qt::QueuedConnection);
}

void CommControl::raiseCommEvent()
{
    m_eventScheduled = false;
    if (m_received.isEmpty() || m_eventBudget >= 0)
        return;
    m_eventBudget = eventLimitInUse();
    m_commEvent = ReceiveEvent;
    const QPointer<CommControl> stillThere(this); // a handler may drop the whole port
    emit OnComm();
    if (!stillThere)
        return;
    m_commEvent = NoEvent;
    m_eventBudget = -1;
    scheduleCommEvent();
}

void CommControl::onGone()
{
    // A hung-up port stays "open" and reports errors without end: close it, once.
    takeReceived();
    m_line->close();
    m_received.clear();
    emit HungUp();
}
