// The preset frequencies in the user's settings, by the index of their button in the main window.
#pragma once

namespace StoredPreset {

constexpr int first = 4; // the displays of start, center and stop are 1 to 3
constexpr int last = 7;

// MHz. A missing entry, or one that is no number, reads as 0: not set.
double read(int index);
// Raises 75 when the settings cannot be written.
void write(int index, double megahertz);

} // namespace StoredPreset
