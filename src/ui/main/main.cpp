#include "ui/main/App.h"

wxIMPLEMENT_APP(App);
