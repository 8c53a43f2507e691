#pragma once

#include <QLatin1StringView>

#include <array>

/// The ordinary windows of the application.
enum class AppWindow { settings, usage, keyboardShortcuts, whatsNew, onboarding, permissions };

/// A window and the name under which `vantle summon` knows it.
struct AppWindowName {
  AppWindow window;
  QLatin1StringView name;
};

inline constexpr std::array kAppWindowNames = {
    AppWindowName{AppWindow::settings, QLatin1StringView("settings")},
    AppWindowName{AppWindow::usage, QLatin1StringView("usage")},
    AppWindowName{AppWindow::keyboardShortcuts, QLatin1StringView("shortcuts")},
    AppWindowName{AppWindow::whatsNew, QLatin1StringView("whats-new")},
    AppWindowName{AppWindow::onboarding, QLatin1StringView("welcome")},
    AppWindowName{AppWindow::permissions, QLatin1StringView("permissions")},
};

/// Opens an ordinary window, or brings it to the front. Main thread only.
class WindowOpener {
 public:
  virtual ~WindowOpener() = default;

  virtual void openWindow(AppWindow window) = 0;
};
