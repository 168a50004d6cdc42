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
  wxRect aMark;  // what to point at, in the picture's pixels; empty for nothing
};
extern const TourPage aTourPages[];
extern const std::size_t lTourPages;

// A PNG file's bytes, made at build time.
struct PictureData {
  const char* szName;
  const unsigned char* aBytes;
  std::size_t lBytes;
};
extern const PictureData aPictureData[];
extern const std::size_t lPictureCount;

// The picture of that name; an unknown one gives an image that is not Ok.
wxImage TourPicture(std::string_view szName);
