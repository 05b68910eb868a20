// The program's message boxes.
#include "core/Message.h"

#include "core/AppState.h"

MessageBox::Answer showMessage(const QString &text, int style)
{
    for (const std::int16_t flags : app().messageBoxStyle)
        style |= flags;
    return MessageBox::show(text, style);
}
