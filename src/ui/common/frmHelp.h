// frmHelp: the window that shows the help book: contents, index and search beside the page. There is at most
// one; asking for another topic turns its pages and brings it to the front. It owns the opened book.
#pragma once

#include <wx/frame.h>
#include <wx/html/helpctrl.h>

#include <cstdint>
#include <string>

class wxHtmlHelpWindow;

class frmHelp : public wxFrame {
 public:
  // Opens the book (a zip archive with a kestrova.hhp in it) where its window is not open yet, and turns to
  // the topic of that number, or to the first page where there is none. False, and no window, when the file
  // is no such book.
  static bool ShowTopic(wxWindow* pOwner, const std::string& szBook, std::int32_t lTopic);
  static frmHelp* Window();  // nullptr when closed

  // The page shown, as a path inside the book, with its anchor.
  wxString Page() const;
  wxHtmlHelpController aController;

  ~frmHelp() override;

 private:
  frmHelp();
  void BuildWindow(wxWindow* pOwner);
  wxHtmlHelpWindow* pBook = nullptr;
};
