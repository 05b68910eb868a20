// Messages for whoever runs the program, and the one door that they pass. Whoever starts the
// program installs the door: a box in the windowed program, a line of text elsewhere.
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

} // namespace MessageBox

// Takes a text, a style and what more there is to say, and gives the answer.
using MessageDoor =
    std::function<MessageBox::Answer(const QString &text, int style, const QString &informative)>;

// An empty door prints the text as a line on standard error and answers Ok, as at the start.
void installMessageDoor(MessageDoor door);

// The informative text stands below the text: causes and remedies.
MessageBox::Answer showMessage(const QString &text, int style, const QString &informative = {});
