// Lines on the wire.
#include "ctl/Wire.h"

#include "core/Secrets.h"
#include "core/TextStart.h"
#include "ctl/Print.h"

Wire::Wire(clsCommPort &port, bool shows) : m_port(port), m_shows(shows)
{
    CommControl *const control = port.host().CommCtl;
    connect(control, &CommControl::BytesSent, this, &Wire::onSent);
    connect(control, &CommControl::BytesReceived, this, &Wire::onReceived);
}

Wire::~Wire()
{
    showMissing();
}

void Wire::forget()
{
    showMissing();
    m_awaits = m_complete = false;
    m_received = 0;
    m_line.clear();
}

void Wire::onSent(const QByteArray &bytes)
{
    forget();
    m_awaits = true;
    show(">", QString::fromLatin1(bytes).trimmed());
}

void Wire::onReceived(const QByteArray &bytes)
{
    m_received += bytes.size();
    for (const char byte : bytes) {
        if (byte == '\r') {
            m_complete = true;
            showReply();
        } else if (byte != '\n' || !m_line.isEmpty()) {
            m_line.append(byte);
        }
    }
    if (m_line.size() > clsCommPort::longestReply)
        showReply();
}

void Wire::showReply(const QString &note)
{
    show("<", QString::fromLatin1(m_line) + note);
    m_line.clear();
}

// Of a line that got no whole reply by the time that something else follows.
void Wire::showMissing()
{
    if (!m_line.isEmpty())
        showReply(QStringLiteral(" (cut off)"));
    else if (isSilent())
        show("<", QStringLiteral("(no answer)"));
}

void Wire::show(const char *direction, const QString &text) const
{
    if (m_shows)
        Print::trace(
            QStringLiteral("COM%1 %2 ").arg(m_port.PortNumber()).arg(QLatin1String(direction)) +
            startOfText(secrets().masked(text)));
}
