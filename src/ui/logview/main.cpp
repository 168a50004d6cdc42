#include "ui/logview/LogView.h"

wxIMPLEMENT_APP(LogView);
