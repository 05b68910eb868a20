// The makers of the windows and of the channel bindings.
#include "windowMakers.h"

#include "ui/channels/clsChannel.h"
#include "ui/channels/frmChannels.h"
#include "ui/dialogs/clsFileObject.h"
#include "ui/dialogs/frmSplash.h"
#include "ui/main/frmMain_KeldoX2.h"
#include "ui/monitor/frmIODaemon.h"

WindowMakers windowMakers()
{
    WindowMakers makers;
    makers.splash = [] { return std::make_unique<frmSplash>(); };
    makers.mainWindow = [] { return std::make_shared<frmMain_KeldoX2>(); };
    makers.channelsWindow = [] { return std::make_shared<frmChannels>(); };
    makers.ioMonitor = [] { return std::make_shared<frmIODaemon>(); };
    makers.channel = [] { return std::make_shared<clsChannel>(); };
    makers.logFile = [] {
        return std::make_unique<clsFileObject>(clsFileObject::Errors::LeftToOwner);
    };
    return makers;
}
