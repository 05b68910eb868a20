// The one door of all message boxes. Texts are shown as plain text; a box falls through once
// the program is ending. Tests answer the boxes here and read what was shown.
#pragma once

#include <QString>

#include <functional>

namespace MessageBox {

// Style words, added up: buttons plus icon.
enum Style : int {
    OkOnly = 0,
    YesNoCancel = 3,
    Critical = 16,
    Question = 32,
    Exclamation = 48,
    Information = 64,
};

enum class Answer { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

struct Request
{
    QString text;
    int style = OkOnly;
    QString title;
};

// Shows the box over the active window and waits for the answer while events are handled. Closing
// the box by its frame or Escape answers Cancel where there is such a button, else Ok.
Answer show(const QString &text, int style, const QString &title);

// With the application's title as the caption.
Answer show(const QString &text, int style);

// Takes the place of the box, for tests; an empty function puts the real box back.
void setAnswerer(std::function<Answer(const Request &)> answerer);

} // namespace MessageBox
