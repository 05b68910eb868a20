// What runs at the moment, a search or a connection: said in both windows, and ended by either.
#pragma once

#include <QString>

// In the search strips of both windows; an empty text hides them.
void showProgressLine(const QString &text);

// Cancel, or Escape: the running search ends after the port it is at, a unit that is being
// connected has failed to connect, and a wait in progress ends at once. Without either it does
// nothing.
void cancelRunning();
