// The debug switches: what the log tells beyond the exchanges themselves. Every port and unit looks
// here when it has something to tell, those made later too. They live only for the run.
#pragma once

struct DebugSwitches
{
    bool bytesSent = false;      // every byte that a port sends
    bool bytesReceived = false;  // every byte that a port receives, also those that are discarded
    bool detailedErrors = false; // the reply that was judged bad
};

// The one set of the run; all off at the start.
DebugSwitches &debugSwitches();
