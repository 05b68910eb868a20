// The one door of all message boxes. Texts are shown as plain text; a box falls through once
// the program is ending. Tests answer the boxes here and read what was shown.
#pragma once

#include "core/Message.h"

#include <QString>

#include <functional>

namespace MessageBox {

struct Request
{
    QString text;
    int style = OkOnly;
    QString title;
    QString informative = {}; // below the text, smaller: causes and remedies
};

// Shows the box over the active window and waits for the answer while events are handled. Closing
// the box by its frame or Escape answers Cancel where there is such a button, else Ok.
Answer show(const Request &request);
Answer show(const QString &text, int style, const QString &title);

// With the application's title as the caption.
Answer show(const QString &text, int style);

} // namespace MessageBox
