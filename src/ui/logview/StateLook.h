// StateLook: the light and the colour of a state, the same in every part of the viewer.
#pragma once

#include <wx/colour.h>

#include "history/LogSummary.h"
#include "ui/common/VirtualTable.h"

namespace StateLook {
VirtualTable::Light LightOf(SiteState iState);
// The picture of such a light.
const char* PictureOf(SiteState iState);
wxColour ColourOf(SiteState iState);
}  // namespace StateLook
