// The program's units.
#include "app/Units.h"

#include "app/AppState.h"

std::shared_ptr<clsKeldoX> makeUnit()
{
    auto unit = std::make_shared<clsKeldoX>();
    QObject::connect(unit.get(), &clsKeldoX::AboutToExchange, unit.get(), [] {
        if (const auto window = app().mainWindow)
            window->stopPolling();
    });
    return unit;
}
