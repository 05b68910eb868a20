// The system's serial port, and how its errors are told apart.
#include "platform/SystemLine.h"

#include "platform/PortRefusal.h"
#include "platform/TestHooks.h"

#include <QScopedValueRollback>

#ifndef Q_OS_WIN
#include <poll.h>
#include <sys/ioctl.h>
#endif

static SerialLine::Maker &maker()
{
    static SerialLine::Maker current;
    return current;
}

void TestHooks::carryLines(SerialLine::Maker make)
{
    maker() = std::move(make);
}

std::unique_ptr<SerialLine> SerialLine::make()
{
    return maker() ? maker()() : std::make_unique<SystemLine>();
}

SystemLine::SystemLine() : m_port(this)
{
    connect(&m_port, &QSerialPort::readyRead, this, &SerialLine::Arrived);
    connect(&m_port, &QSerialPort::errorOccurred, this, &SystemLine::onError);
}

void SystemLine::open(const QString &location, const Settings &settings)
{
    m_port.setPortName(location);
    m_port.setBaudRate(settings.baud);
    m_port.setParity(settings.parity);
    m_port.setDataBits(settings.dataBits);
    m_port.setStopBits(settings.stopBits);
    const QScopedValueRollback opening(m_opening, true);
    if (!m_port.open(QIODevice::ReadWrite))
        throw portRefusal(location, m_port.error(), m_port.errorString());
}

void SystemLine::write(const QByteArray &bytes)
{
    const QScopedValueRollback sending(m_sending, true);
    m_port.write(bytes);
    // Without this the bytes would wait for the next turn of the event loop.
    m_port.flush();
}

void SystemLine::setDataTerminalReady(bool on)
{
    m_port.setDataTerminalReady(on);
    m_port.clearError();
}

void SystemLine::setRequestToSend(bool on)
{
    m_port.setRequestToSend(on);
    m_port.clearError();
}

bool SystemLine::holdsInput() const
{
#ifdef Q_OS_WIN
    return false;
#else
    int held = 0;
    return ioctl(static_cast<int>(m_port.handle()), FIONREAD, &held) == 0 && held > 0;
#endif
}

// Whether the device behind an open port went away. A peer that takes nothing raises the same
// error of Qt, but the port is well.
static bool isGone([[maybe_unused]] const QSerialPort &port)
{
#ifdef Q_OS_WIN
    return true;
#else
    pollfd state{static_cast<int>(port.handle()), 0, 0};
    return poll(&state, 1, 0) < 0 || (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
#endif
}

void SystemLine::onError(QSerialPort::SerialPortError error)
{
    const bool isFatal = error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                         error == QSerialPort::WriteError || error == QSerialPort::PermissionError;
    if (isFatal && !m_opening && isOpen() && (!m_sending || isGone(m_port)))
        emit Gone();
}
