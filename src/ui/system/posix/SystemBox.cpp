#include "ui/system/SystemBox.h"

#include <gtk/gtk.h>

bool SystemBox::Dismiss(wxDialog& aBox) {
  GtkWidget* const pBox = aBox.GetHandle();
  if (!pBox || !GTK_IS_DIALOG(pBox)) return false;
  gtk_dialog_response(GTK_DIALOG(pBox), GTK_RESPONSE_DELETE_EVENT);
  return true;
}
