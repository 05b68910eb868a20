// COM numbers over the system's list of serial ports and the user's links.
#include "platform/PortDirectory.h"

#include "platform/TestHooks.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QStandardPaths>

#include <algorithm>
#include <tuple>

namespace {

// Lower numbers are left to the computer's own ports, which may be plugged in later.
constexpr int firstServed = 3;

// An adapter with a serial number is known again in another socket, and a different one in its
// socket is told apart from it.
QString identityOf(const QSerialPortInfo &info)
{
    if (info.serialNumber().isEmpty())
        return {};
    return QStringLiteral("%1:%2:%3")
        .arg(info.vendorIdentifier())
        .arg(info.productIdentifier())
        .arg(info.serialNumber());
}

QString keyOf(const PortDirectory::Device &port)
{
    return port.identity + QLatin1Char('@') + port.location;
}

#ifndef Q_OS_WIN
// "ttyUSB10" comes after "ttyUSB2". QCollator cannot be asked: it does so in some languages only.
std::tuple<QString, qulonglong, QString> naturalKey(const QString &name)
{
    qsizetype digits = name.size();
    while (digits > 0 && name.at(digits - 1).isDigit())
        --digits;
    return {name.left(digits), name.mid(digits).toULongLong(), name};
}
#endif

// Whether the device is there now, as far as can be told without opening it.
bool isThere([[maybe_unused]] const PortDirectory::Device &device)
{
#ifdef Q_OS_WIN
    return true;
#else
    return device.process || QFileInfo::exists(device.location);
#endif
}

QList<PortDirectory::Device> systemPorts()
{
    QList<PortDirectory::Device> ports;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
        ports.append(
            {info.systemLocation(), info.portName(), info.description(), identityOf(info)});
    return ports;
}

#ifdef Q_OS_WIN
// "COM7" is 7; 0 for anything else.
int comNumber(const QString &name)
{
    return name.startsWith(QLatin1String("COM"), Qt::CaseInsensitive) ? name.mid(3).toInt() : 0;
}
#endif

} // namespace

PortDirectory &PortDirectory::instance()
{
    static PortDirectory directory;
    return directory;
}

QString PortDirectory::linkFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/keldo-x/ports");
}

void TestHooks::listPorts(PortDirectory::Lister lister)
{
    PortDirectory::instance() = PortDirectory(std::move(lister));
}

void PortDirectory::refresh()
{
    m_listed = true;
    m_linked.clear();
    m_numbered.clear();
    readLinks();
    numberListedPorts();
    numberServedPorts();
}

void PortDirectory::readLinks()
{
#ifndef Q_OS_WIN
    const QDir folder(linkFolder());
    const auto entries = folder.entryInfoList(
        {QStringLiteral("com*")}, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        bool isNumber = false;
        const int number = entry.fileName().mid(3).toInt(&isNumber);
        if (!isNumber || number < 1 || !entry.isSymLink())
            continue;
        const QString target = entry.symLinkTarget();
        m_linked.insert(number, {target, QFileInfo(target).fileName(),
                                 QStringLiteral("linked as %1").arg(entry.fileName())});
    }
#endif
}

void PortDirectory::numberListedPorts()
{
    QList<Device> ports = (m_lister ? m_lister() : systemPorts()) + m_named;
#ifdef Q_OS_WIN
    for (const Device &port : std::as_const(ports))
        if (const int number = comNumber(port.name); number > 0)
            m_numbered.insert(number, port);
#else
    std::sort(ports.begin(), ports.end(), [](const Device &a, const Device &b) {
        return naturalKey(a.name) < naturalKey(b.name);
    });
    ports.removeIf([this](const Device &port) { return isLinked(port); });
    // Those found where they were keep their number; the others must not take it.
    ports.removeIf([this](const Device &port) {
        const int number = m_numberOf.value(keyOf(port));
        if (number == 0 || m_linked.contains(number))
            return false;
        m_numbered.insert(number, port);
        return true;
    });
    for (const Device &port : std::as_const(ports)) {
        const int number = newNumberFor(port);
        m_numberOf.insert(keyOf(port), number);
        m_numbered.insert(number, port);
    }
#endif
}

void PortDirectory::serve(const QList<Device> &ports)
{
    m_served = ports;
    refresh();
}

// On Windows, where COM n is COM n, a served port that may be in use is not pushed away by a device
// of its number that is plugged in.
void PortDirectory::numberServedPorts()
{
    for (const Device &port : std::as_const(m_served)) {
        int number = m_numberOf.value(keyOf(port));
        if (number == 0 || m_linked.contains(number))
            number = freeNumber(firstServed);
        m_numberOf.insert(keyOf(port), number);
        m_numbered.insert(number, port);
    }
}

bool PortDirectory::isLinked(const Device &port) const
{
    const QString device = QFileInfo(port.location).canonicalFilePath(); // empty: not there
    return !device.isEmpty() &&
           std::any_of(m_linked.cbegin(), m_linked.cend(), [&](const Device &linked) {
               return QFileInfo(linked.location).canonicalFilePath() == device;
           });
}

int PortDirectory::newNumberFor(const Device &port) const
{
    // An adapter that moved to another socket brings its number along. Cheap adapters may share
    // one serial number, so it must be a number that no other of them has now.
    if (!port.identity.isEmpty())
        for (auto known = m_numberOf.cbegin(); known != m_numberOf.cend(); ++known)
            if (known.key().startsWith(port.identity + QLatin1Char('@')) &&
                !m_numbered.contains(*known) && !m_linked.contains(*known))
                return *known;
    return freeNumber();
}

int PortDirectory::freeNumber(int first) const
{
    int number = first;
    const auto taken = m_numberOf.values();
    while (m_linked.contains(number) || m_numbered.contains(number) || taken.contains(number))
        ++number;
    return number;
}

std::optional<PortDirectory::Device> PortDirectory::find(int number)
{
    if (!m_listed)
        refresh();
    if (const auto linked = m_linked.constFind(number); linked != m_linked.cend())
        return *linked;
    if (const auto numbered = m_numbered.constFind(number); numbered != m_numbered.cend())
        return *numbered;
    return std::nullopt;
}

// 0 for a device without a number. A device that is gone is known by its name alone.
int PortDirectory::knownNumberOf(const QString &location) const
{
    const auto canonical = [](const QString &name) {
        const QString file = QFileInfo(name).canonicalFilePath();
        return file.isEmpty() ? name : file;
    };
    const QString wanted = canonical(location);
    for (const auto *ports : {&m_linked, &m_numbered})
        for (auto port = ports->cbegin(); port != ports->cend(); ++port)
            if (canonical(port->location) == wanted)
                return port.key();
    return 0;
}

int PortDirectory::numberOf(const QString &location)
{
    if (!m_listed)
        refresh();
    if (const int number = knownNumberOf(location); number > 0)
        return number;
    m_named.append({location, QFileInfo(location).fileName(), {}});
    refresh();
    return knownNumberOf(location);
}

bool PortDirectory::isPresent(int number)
{
    const auto device = find(number);
    return device && isThere(*device);
}

bool PortDirectory::isUsable(int number)
{
    if (!isPresent(number))
        return false;
#ifdef Q_OS_WIN
    return true;
#else
    const auto device = find(number);
    const QFileInfo file(device->location);
    return device->process || (file.isReadable() && file.isWritable());
#endif
}

QString PortDirectory::describe(int number)
{
    const auto device = find(number);
    if (!device)
        return {};
    return device->description.isEmpty()
               ? device->name
               : device->name + QStringLiteral(", ") + device->description;
}
