// Start-up in its fixed order, and the channel look-ups that the whole program shares.
#pragma once

#include "app/AppState.h"

// Builds the application-wide objects behind the splash window and shows the main window. Each
// step that fails is reported, and start-up goes on with the next.
void Main(WindowMakers makers);

// Creates the logger over the IO monitor, which is loaded hidden.
void InitTheLogger();

// The first channel, 1 to 8, whose port option is selected on the channels window; 0 when none is.
int activeChannel();

// Runs DisableControls of every channel but the one to spare.
void disableAllChannels(int spare = 0);
