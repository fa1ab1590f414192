// The tour: opens each page and each dialog in turn, types and clicks where
// that shows something, and saves a picture of each step as NN-name.png.
// Modal dialogs are closed by their own Close or Cancel button.
#pragma once

#include <wx/string.h>

class MainFrame;

// Runs the whole tour on a shown frame, inside the running event loop, and
// gives the number of steps that went wrong (0: every picture was saved and
// every step did what it should). Prints each picture's path.
int RunTour(MainFrame* frame, const wxString& outDir);
