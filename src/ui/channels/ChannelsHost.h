// What a channel asks of the window that its row of controls stands in.
#pragma once

#include <memory>

class clsChannel;
struct ChannelControls;

class ChannelsHost
{
public:
    virtual ~ChannelsHost() = default;

    // The control arrays, made when they are first asked for; they live as long as the window.
    virtual const ChannelControls &controls() = 0;
    // From now on the events of the row with this index go to the channel, as long as it lives.
    // Raises 9 (subscript out of range) for an index that the window has no row for.
    virtual void bindRow(int index, std::weak_ptr<clsChannel> channel) = 0;
};
