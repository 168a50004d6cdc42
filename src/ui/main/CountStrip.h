// CountStrip: how many sites there are and how many of each light, in the free strip above the list. A click
// on a number shows just those sites; the View menu does the same for the keyboard. Below it a note may stand
// that leads somewhere.
#pragma once

#include <wx/window.h>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

class CountStrip : public wxWindow {
 public:
  struct Counts {
    std::int32_t lSites = 0;
    std::int32_t lShown = 0;                // after the filters
    std::array<std::int32_t, 3> aLights{};  // green, yellow, red
    bool operator==(const Counts&) const = default;
  };

  // ShowOnly: 0 for all, 1 to 3 for a light.
  CountStrip(wxWindow* pParent, std::function<void(std::int16_t iResult)> ShowOnly);

  void Show(const Counts& aNew);
  using wxWindow::Show;
  void ShowNote(const wxString& szNew);  // empty for none
  std::function<void()> NoteClicked;
  const wxString& Note() const { return szNote; }
  // "8 sites: 3 up, 5 down"
  const wxString& Text() const { return szText; }
  void Click(const wxPoint& aAt);

  bool AcceptsFocus() const override { return false; }
  bool AcceptsFocusFromKeyboard() const override { return false; }

 private:
  struct Piece {
    wxString szText;
    std::int16_t iResult;  // -1: none to click
    int lLeft;
    int lRight;  // pixels
  };
  void Add(const wxString& szPiece, std::int16_t iResult);
  const Piece* At(const wxPoint& aAt) const;
  bool OnNote(const wxPoint& aAt) const;
  int NoteTop() const { return (GetClientSize().y - 2 * GetCharHeight()) / 2 + GetCharHeight(); }
  void Paint();

  std::function<void(std::int16_t)> aShowOnly;
  Counts aCounts;
  std::vector<Piece> aPieces;
  wxString szText, szNote;
};
