#include "ui/logview/StateLook.h"

VirtualTable::Light StateLook::LightOf(SiteState iState) {
  switch (iState) {
    case SiteState::Up:
      return VirtualTable::lGreen;
    case SiteState::Warning:
      return VirtualTable::lYellow;
    case SiteState::Down:
      return VirtualTable::lRed;
    case SiteState::Disabled:
      return VirtualTable::lGrey;
    default:
      return VirtualTable::lNone;
  }
}

const char* StateLook::PictureOf(SiteState iState) {
  switch (iState) {
    case SiteState::Up:
      return "Green";
    case SiteState::Warning:
      return "Yellow";
    case SiteState::Down:
      return "Red";
    default:
      return "Blank";
  }
}

wxColour StateLook::ColourOf(SiteState iState) {
  switch (iState) {
    case SiteState::Up:
      return {0x1f, 0x9d, 0x45};
    case SiteState::Warning:
      return {0xf7, 0xc5, 0x1d};
    case SiteState::Down:
      return {0xd2, 0x2f, 0x2f};
    default:
      return {0x8a, 0x94, 0x9e};
  }
}
