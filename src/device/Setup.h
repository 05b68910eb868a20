// How far the connection to a unit has come, and whether all that was read of it then was good.
#pragma once

struct Setup
{
    bool deviceFound = false;
    bool initialized = false; // set-up values are known and not asked again
    bool initializing = false;
    bool complained = false; // while initializing: one box tells of a unit that fell silent
    bool reading = false;    // the set-up is being read
    bool isGood = false;     // every set-up value had a good reply

    // A reply was bad. While the set-up is read, the next connection reads it again.
    void miss() { isGood = isGood && !reading; }
};
