// A port that the operator has no right to open. Root may open everything, so no test can make one
// of a device's rights.
#pragma once

#include "platform/PortRefusal.h"
#include "platform/SystemLine.h"
#include "platform/TestHooks.h"

class DeniedLine : public SystemLine
{
public:
    explicit DeniedLine(QString denied) : m_denied(std::move(denied)) {}

    // Until the test ends this device belongs to root and the group dialout. Ports that were made
    // before do not know.
    static void install(const QString &device)
    {
        TestHooks::carryLines([device] { return std::make_unique<DeniedLine>(device); });
    }
    static QString told(const QString &device)
    {
        return noAccessText(device, QStringLiteral("root"), QStringLiteral("dialout"));
    }

    void open(const QString &location, const Settings &settings) override
    {
        if (location == m_denied)
            throw RunTimeError(ErrorNumber::DeviceNotOpen, told(location));
        SystemLine::open(location, settings);
    }

private:
    QString m_denied;
};
