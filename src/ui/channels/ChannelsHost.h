// What a channel asks of the window that its row of controls stands in.
#pragma once

#include <memory>

class clsChannel;
struct ChannelControls;

class ChannelsHost
{
public:
    virtual ~ChannelsHost() = default;

    // The control arrays; whoever holds them keeps the window.
    virtual std::shared_ptr<const ChannelControls> controls() const = 0;
    // From now on the events of the row with this index go to the channel, as long as it lives.
    virtual void bindRow(int index, std::weak_ptr<clsChannel> channel) = 0;
};
