#include "logview/LogView.h"

wxIMPLEMENT_APP(LogView);
