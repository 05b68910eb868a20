// The window that an entry or message box belongs to.
#pragma once

class QWidget;

// The active window, but never one that is disposed of when it closes: a box must not go with it.
// Null where the program shows no other window.
QWidget *dialogOwner();
