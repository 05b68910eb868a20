// What tests and measurements take the place of. The program itself calls nothing here.
#pragma once

#include "platform/PortDirectory.h"
#include "platform/SerialLine.h"

#include <functional>
#include <optional>

namespace MessageBox {
struct Request;
enum class Answer;
} // namespace MessageBox

namespace FileChooser {
struct Request;
}

namespace TestHooks {

// Answer message boxes and file dialogs in the operator's place; an empty function shows the real
// ones again.
void answerBoxes(std::function<MessageBox::Answer(const MessageBox::Request &)> answerer);
void answerChoosers(std::function<std::optional<QString>(const FileChooser::Request &)> answerer);

// The ports that the system lists, an empty function for its own list; what the directory has
// seen before is forgotten.
void listPorts(PortDirectory::Lister lister);

// Every port made from now on is carried by such a line; an empty function makes the system's.
void carryLines(SerialLine::Maker maker);

// Every opening of a port raises this error; 0 opens as usual.
void failOpening(int errorNumber);

// Most bytes that a port hands to one comm event; 0 is the program's own number.
void limitCommEvents(int bytes);

// No timer of the program runs longer than this, so that a silent line costs a test no seconds; 0
// lets each run as it was set.
void shortenTimers(int longestMs);
// What the timers that ran out since would have taken: a test's clock that a busy computer cannot
// turn. In ms.
qint64 virtualMs();

// How long a line must have been quiet after a missed reply, in ms; 0 is the program's own time.
void settleWithin(int quietMs);

// A test that ended "the program" starts over.
void takeBackEnding();

} // namespace TestHooks
