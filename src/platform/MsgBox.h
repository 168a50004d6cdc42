// MsgBox: how the floors without windows speak to the operator. The program that runs puts its own presenter
// in place: a message box, a line on standard error, a test's list.
#pragma once

#include <functional>
#include <string>

// Shows the text with an OK button. Without a presenter it goes to standard error.
void MsgBox(const std::string& szText);
void MsgBox_SetPresenter(std::function<void(const std::string&)> aPresenter);
