#pragma once

#include <functional>
#include <map>
#include <memory>

#include "core/presenters/window_opener.h"
#include "core/ui/titled_window.h"

class DesktopApplication;

/// The ordinary windows: each is made when it is opened first, and kept from then on. Main thread only.
class AppWindows final : public WindowOpener {
 public:
  using Factory = std::function<std::unique_ptr<TitledWindow>()>;

  explicit AppWindows(DesktopApplication& desktop) : desktop_(desktop) {}

  void add(AppWindow window, Factory make) { entries_[window].make = std::move(make); }
  void openWindow(AppWindow window) override;

 private:
  struct Entry {
    Factory make;
    std::unique_ptr<TitledWindow> made;
  };

  DesktopApplication& desktop_;
  std::map<AppWindow, Entry> entries_;
};
