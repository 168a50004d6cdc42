// TourPages: what the tour shows, page by page, and its pictures, which are kept inside the program.
#pragma once

#include <wx/gdicmn.h>
#include <wx/image.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

struct TourPage {
  std::int32_t lHeading;
  std::int32_t lText;
  const char* szPicture;
  const char* szMark;  // what to point at in the picture; empty for nothing
};
extern const TourPage aTourPages[];
extern const std::size_t lTourPages;

// The picture of that name (its file's, without ".png"); an unknown one gives an image that is not Ok.
wxImage TourPicture(std::string_view szName);
// Where in that picture the part of that name is, in its pixels; empty where it is not known.
wxRect TourMark(std::string_view szPicture, std::string_view szMark);
