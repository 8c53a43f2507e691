#include "app/app_windows.h"

#include "platform/desktop_application.h"

void AppWindows::openWindow(AppWindow window) {
  Entry& entry = entries_.at(window);
  if (!entry.made) entry.made = entry.make();
  entry.made->open();
  desktop_.activate();
}
