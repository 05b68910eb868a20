// How far the connection to a unit has come, and whether all that was read of it then was good.
#pragma once

struct Setup
{
    bool deviceFound = false;
    bool initialized = false; // set-up values are known and not asked again
    bool initializing = false;
    bool complained = false; // while initializing: one box tells of the first bad reply
    bool reading = false;    // the set-up is being read
    bool isGood = false;     // every set-up value had a good reply

    bool readingIn = false; // from the identity's good reply to the end of what DUTChange reads
    bool gaveUp = false;    // the unit fell silent while it was read in
    bool cancelled = false; // the connection was broken off: nothing more is said of it
    int silent = 0;         // commands in a row, while read in, that got not one byte

    // A reply was bad. While the set-up is read, the next connection reads it again.
    void miss() { isGood = isGood && !reading; }
};
