#pragma once

#include <QObject>

#include "core/settings/app_preferences.h"

class DesktopApplication;

/// Gives every window the light or dark theme: the desktop's choice, or dark when the user says so. Main thread only.
class Appearance : public QObject {
  Q_OBJECT

 public:
  Appearance(const AppPreferences& preferences, DesktopApplication& desktop);

  /// Applies the saved preference now and, from then on, whenever it or the desktop's choice changes.
  void apply();
  /// What the desktop wants, whatever the user has chosen for the windows; as known so far.
  bool isDesktopDark() const { return desktopIsDark_; }

 Q_SIGNALS:
  void desktopChanged();

 private:
  void update();

  const AppPreferences& preferences_;
  DesktopApplication& desktop_;
  bool watching_ = false;
  bool desktopIsDark_ = false;
};
