// The commands that look at ports: their list, and the search for units.
#include "ctl/Commands.h"
#include "ctl/Print.h"
#include "ctl/Wire.h"
#include "discovery/PortList.h"
#include "discovery/PortSearch.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

namespace {

QString comName(int number)
{
    return QStringLiteral("COM%1").arg(number);
}

QString locationOf(int number)
{
    const auto device = PortDirectory::instance().find(number);
    return device ? device->location : QString();
}

void printPort(const ListedPort &port)
{
    QString line = QStringLiteral("%1  %2").arg(comName(port.number), locationOf(port.number));
    const auto device = PortDirectory::instance().find(port.number);
    if (device && !device->description.isEmpty())
        line += QStringLiteral(", ") + device->description;
    if (!port.failure.isEmpty())
        line += QStringLiteral(": ") + port.failure;
    Print::line(line);
}

QJsonObject jsonOf(const ListedPort &port)
{
    QJsonObject object{{QStringLiteral("port"), comName(port.number)},
                       {QStringLiteral("device"), locationOf(port.number)},
                       {QStringLiteral("usable"), port.failure.isEmpty()}};
    if (const auto device = PortDirectory::instance().find(port.number);
        device && !device->description.isEmpty())
        object[QStringLiteral("description")] = device->description;
    if (!port.failure.isEmpty())
        object[QStringLiteral("reason")] = port.failure;
    return object;
}

// One search, its findings printed as they come.
class Search : public QObject
{
    Q_OBJECT

public:
    explicit Search(const Request &request);

    Exit run();

private:
    void onFound(qint16 port, qint16 address);
    void searchOnePort(std::int16_t port);
    void tellRefused() const;

    const Request &m_request;
    PortSearch m_search;
    Wire m_wire;
    QJsonArray m_units;
};

Search::Search(const Request &request)
    : m_request(request), m_wire(m_search.seeker()->ComPort(), request.verbose)
{
    if (request.timeout)
        m_search.seeker()->ComPort().settimeOutMs(*request.timeout);
    connect(&m_search, &PortSearch::UnitFound, this, &Search::onFound);
}

void Search::onFound(qint16 port, qint16 address)
{
    const QString device = locationOf(port);
    m_units.append(QJsonObject{{QStringLiteral("port"), comName(port)},
                               {QStringLiteral("address"), address},
                               {QStringLiteral("device"), device}});
    if (m_request.json)
        return;
    const QString at = address > 0 ? QStringLiteral(" address %1").arg(address) : QString();
    Print::line(QStringLiteral("%1%2  %3").arg(comName(port), at, device));
}

// A unit without an address, or else those with one; one address alone where it is named.
void Search::searchOnePort(std::int16_t port)
{
    if (!PortDirectory::instance().isPresent(port))
        throw Failure(Exit::NoPort, QStringLiteral("There is no %1. \"keldo-x-ctl ports\" lists "
                                                   "the ports.")
                                        .arg(comName(port)));
    m_search.probe(port, m_request.address);
    if (!m_search.refused().isEmpty())
        throw Failure(Exit::NoPort, m_search.refused().first().reason);
    if (m_request.address == 0 && m_units.isEmpty() && !EventQueue::ending())
        m_search.searchAddressesOn(port);
}

void Search::tellRefused() const
{
    for (const PortSearch::Refused &refused : m_search.refused())
        Print::message(QStringLiteral("%1: %2").arg(comName(refused.port), refused.reason));
}

Exit Search::run()
{
    PortDirectory::instance().refresh();
    if (m_request.port)
        searchOnePort(m_request.portNumber());
    else
        m_search.searchAllPorts();
    if (EventQueue::ending())
        throw interrupted();
    if (m_request.json)
        Print::json(m_units);
    tellRefused();
    if (!m_units.isEmpty())
        return Exit::Done;
    throw Failure(Exit::NoAnswer,
                  m_request.port || !m_search.mayHaveAddressedUnits()
                      ? QStringLiteral("No unit was found.")
                      : QStringLiteral("No unit was found. Units with addresses on a shared line "
                                       "are found with --port."));
}

} // namespace

Exit Commands::ports(const Request &request)
{
    QJsonArray all;
    listOpenablePorts([&](const ListedPort &port) {
        all.append(jsonOf(port));
        if (!request.json)
            printPort(port);
    });
    if (EventQueue::ending())
        throw interrupted();
    if (request.json)
        Print::json(all);
    else if (all.isEmpty())
        Print::message(QStringLiteral("There is no serial port. Check that one is plugged in."));
    return Exit::Done;
}

Exit Commands::search(const Request &request)
{
    return Search(request).run();
}

#include "PortCommands.moc"
