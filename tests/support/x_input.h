#pragma once
// Input as a person gives it: real X events through the XTEST extension,
// sent by xdotool to the display the tests run on, each with the server's
// own rising time.
#include <gtk/gtk.h>

#include <string>

namespace kelp::test {

// Runs xdotool with these arguments on $DISPLAY; true when it succeeded.
bool XDoTool(const std::string &arguments);
// The same from any thread: no toolkit call, output dropped.
bool XDoToolQuiet(const std::string &arguments);
// A click of button 1 at a point of the widget's window, in the
// coordinates of `widget`'s GdkWindow (the window's GtkFixed, say).
bool ClickAt(GtkWidget *widget, int x, int y);
// Press, move and release, the release at a second point.
bool PressMoveRelease(GtkWidget *widget, int x, int y, int x2, int y2);
// A key by its X name ("space", "Tab", "Down", "Return").
bool PressKey(const std::string &key);
// Gives the toplevel window the input focus, as a window manager would.
void FocusToplevel(GtkWidget *widget);
// Saves what the X server shows of the widget's toplevel window as PNG.
bool SaveScreenshot(GtkWidget *widget, const std::string &path);

} // namespace kelp::test
