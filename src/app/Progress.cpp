// Saying what runs, and ending it.
#include "app/Progress.h"

#include "app/AppState.h"
#include "device/clsKeldoX.h"
#include "discovery/PortSearch.h"

void showProgressLine(const QString &text)
{
    if (const auto window = app().mainWindow)
        window->showProgressLine(text);
    if (const auto window = app().channelsWindow())
        window->showProgressLine(text);
}

void cancelRunning()
{
    if (const auto search = app().search)
        search->cancel();
    if (const auto unit = app().connecting)
        unit->commPort()->ClosePort();
}
