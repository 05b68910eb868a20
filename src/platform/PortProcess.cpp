// The process behind a port, over QProcess.
#include "platform/PortProcess.h"

#include "platform/PortRefusal.h"

#include <utility>

PortProcess::PortProcess(const QString &program, const QStringList &arguments)
{
    m_process.setProgram(program);
    m_process.setArguments(arguments);
    // Nobody reads it here, and what nobody reads is kept.
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(&m_process, &QProcess::readyRead, this, &PortProcess::onArrived);
    connect(&m_process, &QProcess::bytesWritten, this, &PortProcess::sendOn);
    connect(&m_process, &QProcess::finished, this, &PortProcess::onEnded);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) // else it finishes, too
            onEnded();
    });
}

PortProcess::~PortProcess()
{
    m_process.disconnect(this);
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process
        .waitForFinished(); // QProcess would, too, with a warning; who is killed is gone at once
}

void PortProcess::open(const QString &name)
{
    if (m_open)
        throw RunTimeError(ErrorNumber::PortAlreadyOpen,
                           QStringLiteral("%1 is open in this program already.").arg(name));
    if (m_process.state() == QProcess::NotRunning)
        m_process.start();
    if (m_process.state() == QProcess::NotRunning)
        throw portRefusal(name, QSerialPort::DeviceNotFoundError, {});
    m_open = true;
}

void PortProcess::close()
{
    m_open = false;
    m_unsent.clear();
}

void PortProcess::write(const QByteArray &bytes)
{
    m_unsent.append(bytes);
    sendOn();
}

void PortProcess::sendOn()
{
    if (!m_unsent.isEmpty() && m_process.bytesToWrite() == 0)
        m_process.write(std::exchange(m_unsent, {}));
}

void PortProcess::onArrived()
{
    if (m_open)
        emit Arrived();
    else
        m_process.readAll(); // as a closed port loses it
}

void PortProcess::onEnded()
{
    m_unsent.clear();
    if (m_open)
        emit Gone();
}
