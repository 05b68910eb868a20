// Which device is COM n. On Windows COM n is COM n; elsewhere a link named com<n> in the user's
// keldo-x/ports folder wins, and the ports that the system lists take the free numbers from 1 up.
// Ports that a program serves take what is free from 3 up.
#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class PortProcess;

class PortDirectory
{
public:
    struct Device
    {
        QString location;      // what is opened: "/dev/ttyUSB0", "COM3"
        QString name;          // "ttyUSB0"
        QString description;   // the system's words for it; may be empty
        QString identity = {}; // of the adapter itself, wherever it is plugged in; may be empty
        std::shared_ptr<PortProcess> process = {}; // that serves it; none for a system's device
    };

    // The highest COM number that a search asks for.
    static constexpr int lastNumber = 255;

    // Where the list comes from; an empty function asks the system.
    using Lister = std::function<QList<Device>()>;
    explicit PortDirectory(Lister lister = {}) : m_lister(std::move(lister)) {}

    static PortDirectory &instance();

    // Takes the listing afresh. A number stays with its device for the whole run, also while the
    // device is unplugged.
    void refresh();

    // The device of a COM number as of the last listing (taken now when there was none yet).
    // Nothing for a number without a device. The device may have gone since: look before opening.
    std::optional<Device> find(int number);

    // The ports that programs serve, in place of those before; they keep their numbers as others
    // do.
    void serve(const QList<Device> &ports);

    // The number of a device ("/dev/serial/by-id/..."), as of the last listing. One that the system
    // does not list takes a free number, and keeps it.
    int numberOf(const QString &location);

    // The number has a device as of the last listing, and the device is there now.
    bool isPresent(int number);
    // Present, and this user may read and write it.
    bool isUsable(int number);

    // "ttyUSB0, USB serial converter", or empty for a number without a device.
    QString describe(int number);

    // The folder of the com<n> links.
    static QString linkFolder();

private:
    void readLinks();
    void numberListedPorts();
    void numberServedPorts();
    bool isLinked(const Device &port) const;
    int knownNumberOf(const QString &location) const;
    int newNumberFor(const Device &port) const;
    int freeNumber(int first = 1) const;

    Lister m_lister;
    bool m_listed = false;
    QHash<int, Device> m_linked;   // of the present listing
    QHash<int, Device> m_numbered; // present ports without a link
    QList<Device> m_named;         // ports that the system does not list
    QList<Device> m_served;
    QMap<QString, int> m_numberOf; // identity@location to number, for the whole run
};
