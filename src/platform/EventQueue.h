// Co-operative waiting: yielding to the event queue, and the end of the program, which every
// wait, message box, port opening and loop over ports falls through.
#pragma once

namespace EventQueue {

// Handles everything that is pending and returns.
void yield();

// Sleeps until at least one event came and was handled. Never called while something that the
// wait is for is already there: nothing would wake it.
void sleepUntilEvent();

// True from the moment that the program is ending.
bool ending();

// Ends the program: raises the flag and leaves every event loop, nested ones included.
void endProgram();

} // namespace EventQueue
