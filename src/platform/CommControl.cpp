// The serial control over QSerialPort.
#include "platform/CommControl.h"

#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"
#include "platform/PortRefusal.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>
#include <QHash>
#include <QPointer>

#include <algorithm>

#ifndef Q_OS_WIN
#include <poll.h>
#include <sys/ioctl.h>
#endif

namespace {

// A unit's command is a few dozen bytes: a queue of this size means that nobody takes them.
constexpr qint64 outputQueueLimit = 4096;

// Whether the device behind an open port went away. A peer that takes nothing raises the same
// error of Qt, but the port is well.
bool isGone([[maybe_unused]] const QSerialPort &port)
{
#ifdef Q_OS_WIN
    return true;
#else
    pollfd state{static_cast<int>(port.handle()), 0, 0};
    return poll(&state, 1, 0) < 0 || (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
#endif
}

// Whether bytes have arrived that the port has not taken over yet.
bool systemHoldsInput([[maybe_unused]] const QSerialPort &port)
{
#ifdef Q_OS_WIN
    return false;
#else
    int held = 0;
    return ioctl(static_cast<int>(port.handle()), FIONREAD, &held) == 0 && held > 0;
#endif
}

} // namespace

CommControl::CommControl(QObject *parent) : QObject(parent), m_port(this)
{
    connect(&m_port, &QSerialPort::readyRead, this, &CommControl::takeReceived);
    connect(&m_port, &QSerialPort::errorOccurred, this, &CommControl::onError);
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
    m_port.setBaudRate(baud);
    m_port.setParity(parities.value(words.at(1).toUpper()));
    m_port.setDataBits(static_cast<QSerialPort::DataBits>(bits));
    m_port.setStopBits(stops.value(words.at(3)));
}

void CommControl::setDTREnable(bool on)
{
    m_dtr = on;
    if (portOpen())
        m_port.setDataTerminalReady(on);
}

void CommControl::setRTSEnable(bool on)
{
    m_rts = on;
    if (portOpen())
        m_port.setRequestToSend(on);
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
    m_afterCarriageReturn = m_afterCarriageReturn || systemHoldsInput(m_port);
    m_port.clear(QSerialPort::Input);
    m_received.clear();
}

void CommControl::discardOutput()
{
    if (portOpen())
        m_port.clear(QSerialPort::Output);
}

void CommControl::setPortOpen(bool open)
{
    if (open && portOpen())
        throw RunTimeError(ErrorNumber::PortAlreadyOpen);
    if (open && m_openFault != 0)
        throw RunTimeError(m_openFault);
    if (open)
        openPort();
    else if (portOpen())
        m_port.close();
    m_received.clear();
    m_afterCarriageReturn = false;
}

void CommControl::openPort()
{
    const auto device = PortDirectory::instance().find(m_commPort);
    // Opening a missing device would cost milliseconds for its lock file.
#ifdef Q_OS_WIN
    const bool isThere = true;
#else
    const bool isThere = device && QFileInfo::exists(device->location);
#endif
    if (EventQueue::ending() || !device)
        throw RunTimeError(ErrorNumber::InvalidPortNumber);
    if (!isThere)
        throw portRefusal(device->location, QSerialPort::DeviceNotFoundError, {});

    m_port.setPortName(device->location);
    m_deviceName = device->location; // QSerialPort cuts the folder off
    m_opening = true;
    const bool opened = m_port.open(QIODevice::ReadWrite);
    m_opening = false;
    if (!opened)
        throw portRefusal(m_deviceName, m_port.error(), m_port.errorString());
    // Pseudo-terminals know no modem lines and refuse both; a unit does not need to care.
    m_port.setDataTerminalReady(m_dtr);
    m_port.setRequestToSend(m_rts);
    m_port.clearError();
    m_port.clear();
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
    if (m_port.bytesToWrite() + bytes.size() > outputQueueLimit)
        throw RunTimeError(ErrorNumber::DeviceBusy);
    m_sending = true;
    m_port.write(bytes);
    // Without this the bytes would wait for the next turn of the event loop.
    m_port.flush();
    m_sending = false;
    if (portOpen()) // else the device went away under it
        emit BytesSent(bytes);
}

// Only appends: readyRead is not raised again while its own handler runs, so nothing that could
// yield may be called from here.
void CommControl::takeReceived()
{
    const QByteArray bytes = m_port.readAll();
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
    m_eventBudget = m_eventLimit;
    m_commEvent = ReceiveEvent;
    const QPointer<CommControl> stillThere(this); // a handler may drop the whole port
    emit OnComm();
    if (!stillThere)
        return;
    m_commEvent = NoEvent;
    m_eventBudget = -1;
    scheduleCommEvent();
}

void CommControl::onError(QSerialPort::SerialPortError error)
{
    const bool isFatal = error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                         error == QSerialPort::WriteError || error == QSerialPort::PermissionError;
    if (!isFatal || m_opening || !portOpen() || (m_sending && !isGone(m_port)))
        return;
    // A hung-up port stays "open" and reports errors without end: close it, once.
    takeReceived();
    m_port.close();
    m_received.clear();
    emit HungUp();
}
