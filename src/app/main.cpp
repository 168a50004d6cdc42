#include "app/App.h"

wxIMPLEMENT_APP(App);
