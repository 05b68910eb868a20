// Start-up in its fixed order, and the helpers that the whole program shares: the co-operative
// pause and the channel look-ups.
#pragma once

#include "core/AppState.h"

class TimerControl;

// Builds the application-wide objects behind the splash window and shows the main window. Each
// step that fails is reported, and start-up goes on with the next.
void Main(WindowMakers makers);

// Creates the logger over the IO monitor, which is loaded hidden.
void InitTheLogger();

// Waits for ms milliseconds on the given timer while events are handled. 0 returns at once and
// touches nothing; a negative value only sets the interval. The wait also ends when the program
// ends or the timer goes away.
void pauseit(TimerControl *timer, int ms);

// The first channel, 1 to 8, whose port option is selected on the channels window; 0 when none is.
int activeChannel();

// Runs DisableControls of every channel but the one to spare.
void disableAllChannels(int spare = 0);
