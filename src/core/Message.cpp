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

MessageBox::Answer showMessage(const QString &text, int style, const QString &informative)
{
    // A copy: the door may be replaced while its message is read.
    if (const MessageDoor door = messageDoor())
        return door(text, style, informative);
    std::fprintf(stderr, "%s\n", qPrintable(text));
    if (!informative.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(informative));
    return MessageBox::Answer::Ok;
}
