// FolderChooser: the system's own window for choosing a folder. Waits for the operator.
#pragma once

#include <string>

class wxWindow;

namespace FolderChooser {

// The chosen folder, empty when none was. Opens at szStart where that is a folder.
std::string Choose(wxWindow* pOwner, const std::string& szInstruction, const std::string& szStart);

}  // namespace FolderChooser
