// Asking a receiver.
#include "ctl/Receiver.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int firstBackOff = 250; // ms; doubled at each failure
constexpr int longestBackOff = 30'000;
constexpr double hertzPerMegahertz = 1e6;

QString shown(const QByteArray &line)
{
    constexpr qsizetype enough = 60;
    QString text;
    for (const char byte : line.left(enough))
        text += byte >= ' ' && byte <= '~' ? QLatin1Char(byte) : QLatin1Char('.');
    return text;
}

} // namespace

Receiver::Place Receiver::placeOf(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(^(?:\[([0-9A-Fa-f:.%\w]+)\]|([^\s:\[\]]+))(?::(\d{1,5}))?$)"));
    const auto match = pattern.match(text);
    if (!match.hasMatch())
        return {};
    const int port = match.capturedLength(3) > 0 ? match.captured(3).toInt() : standardPort;
    constexpr int lastPort = 65535;
    return {match.captured(1) + match.captured(2),
            static_cast<quint16>(port <= lastPort ? port : 0)};
}

Receiver::Receiver(Place place, int interval, int timeout, QObject *parent)
    : QObject(parent),
      m_place(std::move(place)),
      m_interval(interval),
      m_timeout(timeout),
      m_backOff(firstBackOff)
{
    m_next.setSingleShot(true);
    m_deadline.setSingleShot(true);
    m_socket.setReadBufferSize(4 * longestLine);
    connect(&m_next, &QTimer::timeout, this, [this] {
        if (m_socket.state() == QAbstractSocket::ConnectedState)
            ask();
        else
            connectAgain();
    });
    connect(&m_deadline, &QTimer::timeout, this,
            [this] { lose(QStringLiteral("it does not answer")); });
    connect(&m_socket, &QTcpSocket::connected, this, &Receiver::ask);
    connect(&m_socket, &QTcpSocket::readyRead, this, &Receiver::onReadyRead);
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this] { lose(m_socket.errorString()); });
}

Receiver::~Receiver()
{
    m_socket.disconnect(this); // it goes last, and may have something to say
}

void Receiver::start()
{
    connectAgain();
}

void Receiver::connectAgain()
{
    m_deadline.start(m_timeout);
    m_socket.connectToHost(m_place.host, m_place.port);
}

void Receiver::ask()
{
    // What nobody asked for answers nothing.
    m_socket.readAll();
    m_line.clear();
    m_asked = true;
    m_deadline.start(m_timeout);
    m_socket.write("f\n");
}

void Receiver::onReadyRead()
{
    const QByteArray bytes = m_socket.readAll();
    if (!m_asked)
        return;
    m_line += bytes;
    const auto end = m_line.indexOf('\n');
    if (end >= 0 && end <= longestLine)
        judge(m_line.left(end).trimmed());
    else if (m_line.size() > longestLine)
        lose(QStringLiteral("it sends a line without end"));
}

// Whole hertz, or with a fraction, and nothing else. A receiver is not at 0 Hz.
void Receiver::judge(const QByteArray &line)
{
    static const QRegularExpression number(QStringLiteral(R"(^\d{1,12}(\.\d{1,12})?$)"));
    m_asked = false;
    m_deadline.stop();
    m_next.start(m_interval);
    const QString text = QString::fromLatin1(line);
    const double hertz = number.match(text).hasMatch() ? text.toDouble() : 0;
    if (hertz > 0) {
        m_backOff = firstBackOff;
        emit Tuned(hertz / hertzPerMegahertz);
    } else if (line.startsWith("RPRT ")) {
        emit Puzzling(QStringLiteral("it reports an error, %1").arg(shown(line)));
    } else {
        emit Puzzling(QStringLiteral("it answers \"%1\", which is no frequency").arg(shown(line)));
    }
}

void Receiver::lose(const QString &why)
{
    m_deadline.stop();
    m_asked = false;
    const QSignalBlocker blocker(m_socket); // its own farewell would be another loss
    m_socket.abort();
    m_next.start(m_backOff);
    m_backOff = std::min(2 * m_backOff, longestBackOff);
    emit Lost(why);
}
