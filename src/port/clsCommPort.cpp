// The serial port object: opening, sending and the receive buffer. The waits are in
// clsCommPort_wait.cpp.
#include "port/clsCommPort.h"

#include "core/DebugSwitches.h"
#include "core/EventLog.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/Secrets.h"
#include "core/TextNumbers.h"
#include "platform/EventQueue.h"
#include "platform/RunTimeError.h"

#include <QSet>

static const char initializeSource[] = "clsCommPort.InitializePort";
static const char onCommSource[] = "clsCommPort.DoOnComm";

clsCommPort::clsCommPort() : m_host(std::make_unique<frmMScomm>()), m_control(m_host->CommCtl)
{
    m_host->setParent(this);
    connect(m_control, &CommControl::BytesSent, this, [this](const QByteArray &bytes) {
        if (debugSwitches().bytesSent)
            logSent(bytes);
    });
    connect(m_control, &CommControl::BytesReceived, this, [this](const QByteArray &bytes) {
        if (debugSwitches().bytesReceived)
            logReceived(bytes);
    });
}

clsCommPort::~clsCommPort()
{
    m_host->setParent(static_cast<clsCommPort *>(nullptr));
}

QString clsCommPort::ComPortStatusString() const
{
    switch (m_status) {
    case Closed:
        return QStringLiteral("port_closed");
    case Open:
        return QStringLiteral("port_open");
    case InUse:
        return QStringLiteral("port_already_in_use");
    case Error:
        return QStringLiteral("port_error");
    default:
        return QStringLiteral("port_status_unknown");
    }
}

void clsCommPort::setPortNumber(std::int16_t number)
{
    if (number > 0)
        m_portNumber = number;
}

bool clsCommPort::InitializePort()
{
    if (m_portNumber == 0)
        return false;
    m_openFailure.clear();
    try {
        ClosePort();
        openControl();
        return true;
    } catch (...) {
        reportAndEnd(initializeSource, [this] { sortOpenError(); });
        return false;
    }
}

void clsCommPort::openControl()
{
    m_modeInUse = m_portMode;
    const bool eventMode = m_modeInUse == Event;
    // A port object that was never given a number hands over its -1: the control refuses it.
    m_control->setCommPort(m_portNumber);
    m_control->setSettings(QStringLiteral("19200,N,8,1"));
    m_control->setRThreshold(eventMode ? 1 : 0);
    m_control->setInputLen(eventMode ? 1 : 0);
    m_control->setDTREnable(true);
    m_control->setRTSEnable(false);
    m_control->setInBufferSize(16000);
    m_control->discardInput();
    if (m_control->portOpen())
        m_control->setPortOpen(false);
    m_control->setPortOpen(true);
    renewOpening();
    ClearBuffer();
    m_status = Open;
}

// Called while the error is being handled.
void clsCommPort::sortOpenError()
{
    static const QSet<int> reported = {8000, 8012, 8015, 8018, 8020, 8021, 380, 383, 394};
    m_status = Error;
    try {
        throw;
    } catch (const RunTimeError &error) {
        m_status = error.number() == ErrorNumber::PortAlreadyOpen ? InUse : Error;
        if (error.description() != runTimeErrorText(error.number()))
            m_openFailure = error.description();
        if (!m_displayErrors)
            return;
        if (error.number() == ErrorNumber::PortAlreadyOpen)
            showMessage(QStringLiteral("The serial port (COM%1:) is already in use. If there is "
                                       "another program using the port, you need to "
                                       "close it and re-start this one.")
                            .arg(m_portNumber),
                        MessageBox::Exclamation);
        else if (error.number() == ErrorNumber::InvalidPortNumber)
            showMessage(QStringLiteral("Check data and power connections to KELDO-X filter then "
                                       "select the 'connect' from the menu."),
                        MessageBox::Exclamation);
        else if (reported.contains(error.number()))
            ReportError(QString::fromLatin1(initializeSource), {});
        else
            // Deliberately empty: no message is composed for a number outside the list.
            showMessage(QString(), MessageBox::Exclamation);
    }
}

void clsCommPort::OpenPort()
{
    if (m_control->portOpen())
        return;
    m_control->setPortOpen(true);
    renewOpening();
    m_status = Open;
}

void clsCommPort::ClosePort()
{
    m_control->setPortOpen(false);
    renewOpening();
    m_status = Closed;
    ClearBuffer();
}

void clsCommPort::SendString(const QString &text)
{
    if (IsOpen()) {
        m_afterPassword = secrets().noteCommand(text);
        m_control->output(text);
    } else if (m_displayErrors)
        showMessage(QStringLiteral("The port is not open.\r\nIf you are trying to control a USB "
                                   "device, make sure it is connected."),
                    MessageBox::Exclamation);
}

QString clsCommPort::BufferStart() const
{
    const auto end = m_buffer.indexOf(QLatin1Char('\r'));
    return end < 0 ? QString() : m_buffer.left(end);
}

void clsCommPort::CleanUpBuffer()
{
    const auto end = m_buffer.indexOf(QLatin1Char('\r'));
    if (end >= 0)
        m_buffer.remove(0, end + 1);
}

std::int16_t clsCommPort::BufferSize() const
{
    return toInt16(static_cast<double>(m_buffer.size()));
}

void clsCommPort::ClearBuffer()
{
    m_buffer.clear();
    m_recordCount = 0;
}

void clsCommPort::DoOnComm()
{
    reportAndEnd(onCommSource, [this] {
        if (m_control->commEvent() != CommControl::ReceiveEvent)
            return;
        QString brought;
        while (m_control->inBufferCount() >= 1) {
            const QString unit = m_control->input();
            storeReceived(unit);
            brought += unit;
        }
        // A dump of the event would run past its newest byte: with more than 97 bytes it leaves the
        // record, and the event is reported as an error.
        if (m_recordCount + 3 >= recordSize)
            throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        emit GotData(brought, m_recordCount);
        m_recordCount = 0;
    });
}

void clsCommPort::storeReceived(const QString &unit)
{
    ++m_recordCount;
    if (m_recordCount >= recordSize)
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    m_buffer.append(unit.at(0));
}

// What was awaited on the port as it was opened before will not come.
void clsCommPort::renewOpening()
{
    m_opening.renew();
    m_unsettled = false;
}

void clsCommPort::DoHangUp()
{
    m_status = Error;
    // An exchange in progress tells of it by the reply that it misses; only an idle port has to
    // report.
    const bool isIdle = !isBusy();
    renewOpening();
    logEvent(QStringLiteral("clsCommPort"),
             QStringLiteral("COM%1 (%2) is gone").arg(m_portNumber).arg(m_control->deviceName()));
    // Queued: no box may open inside the serial port's own error handling.
    if (isIdle && m_displayErrors)
        QMetaObject::invokeMethod(this, &clsCommPort::reportHangUp, Qt::QueuedConnection);
    emit HungUp();
}

void clsCommPort::reportHangUp()
{
    reportAndEnd(onCommSource, [this] {
        throw RunTimeError(ErrorNumber::ReadFailed, QStringLiteral("COM%1 (%2) was disconnected.")
                                                        .arg(m_portNumber)
                                                        .arg(m_control->deviceName()));
    });
}

static QString dumpOf(const QByteArray &bytes)
{
    QString printable;
    for (const char byte : bytes)
        printable += byte >= ' ' && byte <= '~' ? QLatin1Char(byte) : QLatin1Char('.');
    return QStringLiteral(": %1 <%2>").arg(QString::fromLatin1(bytes.toHex(' ')), printable);
}

void clsCommPort::logSent(const QByteArray &bytes) const
{
    if (m_afterPassword)
        logEvent(QStringLiteral("clsCommPort"),
                 QStringLiteral(" COM%1 sent PASSWORD ****").arg(m_portNumber));
    else
        logBytes(QStringLiteral("sent"), bytes.size(), dumpOf(bytes));
}

// A line that echoes brings the password back: until the next command only the count is told.
void clsCommPort::logReceived(const QByteArray &bytes) const
{
    const bool isSecret = m_afterPassword || secrets().occursIn(QString::fromLatin1(bytes));
    logBytes(QStringLiteral("received"), bytes.size(), isSecret ? QString() : dumpOf(bytes));
}

void clsCommPort::logBytes(const QString &direction, qsizetype count, const QString &shown) const
{
    logEvent(QStringLiteral("clsCommPort"),
             QStringLiteral(" COM%1 %2 %3 bytes").arg(m_portNumber).arg(direction).arg(count) +
                 shown);
}
