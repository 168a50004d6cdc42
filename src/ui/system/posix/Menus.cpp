#include "ui/system/Menus.h"

#include <gtk/gtk.h>

// wxWidgets knows no way to close a menu; GTK's open menu holds the grab.
void Menus::CloseOpen() {
  GtkWidget* const pHolder = gtk_grab_get_current();
  if (pHolder && GTK_IS_MENU_SHELL(pHolder)) gtk_menu_shell_cancel(GTK_MENU_SHELL(pHolder));
}
