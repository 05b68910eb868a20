// Start-up and the shared helpers.
#include "app/modMain_KeldoX2.h"

#include "app/Words.h"
#include "core/ResumeNext.h"
#include "core/clsLogger.h"
#include "platform/EventQueue.h"
#include "platform/RunTimeError.h"

static const char mainSource[] = "modMain_KeldoX2.Main";

// An earlier step that failed has left nothing behind.
template <class Pointer> static auto &existing(const Pointer &object)
{
    if (!object)
        throw RunTimeError(ErrorNumber::ObjectNotSet);
    return *object;
}

static void bindChannel(int number)
{
    AppState &state = app();
    state.channels[number] = state.makers.channel();
    existing(state.channels[number]).setIndex(static_cast<std::int16_t>(number));
}

void Main(WindowMakers makers)
{
    AppState &state = app();
    state.makers = std::move(makers);
    std::unique_ptr<SplashView> splash;
    resumeNext(
        mainSource, [&] { state.messageBoxStyle.fill(0); },
        [&] {
            splash = state.makers.splash();
            splash->show();
        },
        [] { EventQueue::yield(); }, [&] { state.mainWindow = state.makers.mainWindow(); },
        [] { InitTheLogger(); }, [&] { existing(state.mainWindow).load(); });
    for (int number = 1; number <= decltype(state.channels)::last && !EventQueue::ending();
         ++number)
        resumeNext(
            mainSource, [&] { bindChannel(number); }, [] { EventQueue::yield(); },
            [&] {
                if (splash)
                    splash->advance();
            });
    if (EventQueue::ending())
        return;
    resumeNext(
        mainSource, [&] { existing(state.mainWindow).show(); },
        [&] {
            if (!splash)
                return;
            // The splash asks for its four seconds; the program does not wait for them. Either
            // answer unloads it.
            [[maybe_unused]] const bool ready = splash->ReadyToClose();
            splash->unload();
        });
}

// The source lacks the module's "2" on purpose: that is how the log has always named it.
void InitTheLogger()
{
    AppState &state = app();
    auto logger = std::make_shared<clsLogger>();
    std::shared_ptr<IOMonitorView> monitor;
    resumeNext(
        "modMain_KeldoX.InitTheLogger", [&] { installEventLog(logger); },
        [&] {
            logger->setFileMaker(state.makers.logFile);
            monitor = state.ioMonitor();
            logger->setDisplayWindow(monitor);
        },
        [&] {
            if (monitor)
                monitor->load();
        },
        [&] { logger->setLogFileName(QStringLiteral("Keldo-X.log")); });
}

int activeChannel()
{
    int number = 0;
    reportAndEnd("modMain_KeldoX2.activeChannel", [&] {
        if (const auto window = app().channelsWindow())
            number = window->ChanIndex();
    });
    return number;
}

void disableAllChannels(int spare)
{
    auto &channels = app().channels;
    for (int number = 1; number <= channelCount; ++number)
        if (number != spare && channels[number])
            resumeNext("modMain_KeldoX2.disableAllChannels",
                       [&] { channels[number]->DisableControls(); });
}
