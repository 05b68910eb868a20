// The co-operative pause.
#pragma once

class TimerControl;

// Waits for ms milliseconds on the given timer while events are handled. 0 returns at once and
// touches nothing; a negative value only sets the interval. The wait also ends when the program
// ends or the timer goes away.
void pauseit(TimerControl *timer, int ms);
