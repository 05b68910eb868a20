// Message boxes in the program's one style: the icon with the application-wide style flags, the
// application's title as the caption.
#pragma once

#include "platform/MessageBox.h"

MessageBox::Answer showMessage(const QString &text, int style);
