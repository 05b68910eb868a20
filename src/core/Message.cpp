// The message door.
#include "core/Message.h"

#include <cstdio>

static MessageDoor &messageDoor()
{
    static MessageDoor door;
    return door;
}

void installMessageDoor(MessageDoor door)
{
    messageDoor() = std::move(door);
}

MessageBox::Answer showMessage(const QString &text, int style)
{
    // A copy: the door may be replaced while its message is read.
    if (const MessageDoor door = messageDoor())
        return door(text, style);
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return MessageBox::Answer::Ok;
}
