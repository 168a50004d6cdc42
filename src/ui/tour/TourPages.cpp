#include "ui/tour/TourPages.h"

#include <wx/imagpng.h>
#include <wx/mstream.h>

#include <sstream>
#include <string>

#include "base/Embedded.h"
#include "base/Strings.h"

extern const Embedded::Files aPictureFiles;

const TourPage aTourPages[] = {
    {IDS_TOUR_HEAD_WELCOME, IDS_TOUR_TEXT_WELCOME, "main", ""},
    {IDS_TOUR_HEAD_LIST, IDS_TOUR_TEXT_LIST, "main", "list"},
    {IDS_TOUR_HEAD_LIGHTS, IDS_TOUR_TEXT_LIGHTS, "main", "lights"},
    {IDS_TOUR_HEAD_ADD, IDS_TOUR_TEXT_ADD, "editor", ""},
    {IDS_TOUR_HEAD_CHECK, IDS_TOUR_TEXT_CHECK, "progress", ""},
    {IDS_TOUR_HEAD_SCHEDULE, IDS_TOUR_TEXT_SCHEDULE, "options-timer", ""},
    {IDS_TOUR_HEAD_MAIL, IDS_TOUR_TEXT_MAIL, "options-manager", ""},
    {IDS_TOUR_HEAD_LOGS, IDS_TOUR_TEXT_LOGS, "options-logs", ""},
    {IDS_TOUR_HEAD_VIEWER, IDS_TOUR_TEXT_VIEWER, "viewer", ""},
    {IDS_TOUR_HEAD_VIEW, IDS_TOUR_TEXT_VIEW, "main", "view"},
    {IDS_TOUR_HEAD_END, IDS_TOUR_TEXT_END, "main", ""},
};
const std::size_t lTourPages = sizeof(aTourPages) / sizeof(aTourPages[0]);

wxImage TourPicture(std::string_view szName) {
  if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG)) wxImage::AddHandler(new wxPNGHandler);
  wxImage aImage;
  const auto szBytes = Embedded::Bytes(aPictureFiles, std::string(szName) + ".png");
  wxMemoryInputStream aStream(szBytes.data(), szBytes.size());
  if (!szBytes.empty()) aImage.LoadFile(aStream, wxBITMAP_TYPE_PNG);
  return aImage;
}

// The places come with the picture, taken in the same moment: one a line, "list 4 80 700 200".
wxRect TourMark(std::string_view szPicture, std::string_view szMark) {
  std::istringstream aLines(std::string(Embedded::Bytes(aPictureFiles, std::string(szPicture) + ".txt")));
  std::string szName;
  wxRect aMark;
  while (aLines >> szName >> aMark.x >> aMark.y >> aMark.width >> aMark.height)
    if (szName == szMark) return aMark;
  return {};
}
