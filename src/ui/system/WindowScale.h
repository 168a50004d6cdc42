// WindowScale: how large things are drawn. Window layouts count in twips, 1440 to the inch.
#pragma once

class wxWindow;

namespace WindowScale {

// Dots per inch of text in that window: the screen's resolution with the user's text scaling, 96 as the
// usual.
double TextDPI(const wxWindow& aWindow);

// Lengths in the units that window positions count in.
int FromTwips(const wxWindow& aWindow, int lTwips);
int ToTwips(const wxWindow& aWindow, int lPixels);

}  // namespace WindowScale
