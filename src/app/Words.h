// Words that stand in several places: panels, channels and presets by their numbers, and the texts
// that say whether a unit is connected.
#pragma once

#include <QString>

constexpr int channelCount = 8; // numbered from 1

// Of the channels window, which has room for more channels than there are.
constexpr int channelTabs = 4;
constexpr int channelsPerTab = 4;

// Of the main window's status bar.
namespace MainPanel {
constexpr int connection = 1;
constexpr int unitStatus = 2;
} // namespace MainPanel

// Of the channels window's status bar.
namespace ChannelsPanel {
constexpr int connection = 1;
constexpr int firmware = 2;
constexpr int bandwidth = 3;
constexpr int seeker = 4;
constexpr int unit = 5;
} // namespace ChannelsPanel

// Of the preset table: three displays of the unit's frequency plan, then the buttons.
namespace Preset {
constexpr int start = 1;
constexpr int center = 2;
constexpr int stop = 3;
constexpr int firstButton = 4;
constexpr int last = 7;
} // namespace Preset

namespace Words {
constexpr QLatin1String notConnected("NOT CONNECTED");
constexpr QLatin1String noActiveChannel("No active channel");

inline QString activeChannel(int channel)
{
    return QStringLiteral("Active Channel %1").arg(channel);
}
} // namespace Words
