// The makers of the windows and of the channel bindings.
#include "windowMakers.h"

#include "platform/RunTimeError.h"
#include "ui/channels/clsChannel.h"
#include "ui/channels/frmChannels.h"
#include "ui/dialogs/clsFileObject.h"
#include "ui/dialogs/frmSplash.h"
#include "ui/main/frmMain_KeldoX2.h"
#include "ui/monitor/frmIODaemon.h"
#include "widgets/ScrollPane.h"
#include "widgets/WindowPlace.h"

// The channels window of the run, seen by the channels as what their rows stand in.
using ChannelsWindow = std::shared_ptr<std::weak_ptr<frmChannels>>;

static clsChannel::HostSource hostSource(const ChannelsWindow &window)
{
    return [window] {
        app().channelsWindow(); // loaded when it is first asked for
        auto host = window->lock();
        if (!host)
            throw RunTimeError(ErrorNumber::ObjectNotSet);
        return host;
    };
}

WindowMakers windowMakers()
{
    const auto channels = std::make_shared<std::weak_ptr<frmChannels>>();
    WindowMakers makers;
    makers.splash = [] { return std::make_unique<frmSplash>(); };
    makers.mainWindow = [] {
        auto window = std::make_shared<frmMain_KeldoX2>();
        WindowPlace::keep(*window, QStringLiteral("main"));
        return window;
    };
    makers.channelsWindow = [channels] {
        auto window = std::make_shared<frmChannels>();
        window->keepPlaceAs(QStringLiteral("channels"));
        *channels = window;
        return window;
    };
    makers.ioMonitor = [] {
        auto window = std::make_shared<frmIODaemon>();
        window->keepPlaceAs(QStringLiteral("monitor"));
        ScrollPane::wrap(*window);
        return window;
    };
    makers.channel = [source = hostSource(channels)] {
        return std::make_shared<clsChannel>(source);
    };
    makers.logFile = [] {
        return std::make_unique<clsFileObject>(clsFileObject::Errors::LeftToOwner,
                                               clsFileObject::Readers::UserAlone);
    };
    return makers;
}
