// The gallery's own pictures, drawn in code: a film strip for
// Widgets::Animation and the picture of the About box.
#pragma once

#include <wx/bitmap.h>

// Twelve square frames of `size` pixels side by side: a spinner of twelve
// spokes whose bright spoke goes round once over the strip.
wxBitmap SpinnerStrip(int size);
// The gallery's emblem, `size` pixels square.
wxBitmap GalleryEmblem(int size);

// Frames in SpinnerStrip.
const unsigned int kSpinnerFrames = 12;
