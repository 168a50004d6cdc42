// KVTour: the tour, a program of its own that needs nothing but itself.
#include <wx/app.h>

#include "ui/tour/frmTour.h"

class TourApp : public wxApp {
 public:
  bool OnInit() override {
    auto* pTour = new frmTour;
    pTour->Maximize();
    pTour->Show();
    pTour->Raise();
    return true;
  }
};

wxIMPLEMENT_APP(TourApp);
