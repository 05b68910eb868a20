// What screen readers hear of the controls that Qt does not know: lights, arrows, and options that
// stand in a set of our own.
#pragma once

// Makes them heard; called by each such control, the first call does it.
void speakControls();
