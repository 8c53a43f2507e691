#pragma once

#include <QString>
#include <QUuid>

/// The tabs of the settings window, in their order.
enum class SettingsTab { general, tools, shortcuts, notifications, launcher, privacy };

/// Opens the settings window. Main thread only.
class SettingsOpener {
 public:
  virtual ~SettingsOpener() = default;

  virtual void openSettings() = 0;
  virtual void openSettings(SettingsTab tab) = 0;
  /// The tools tab with the page of one tool.
  virtual void openToolSettings(const QString& toolID) = 0;
  /// The Frequent CLIs page with one command selected and focused.
  virtual void openCommandSettings(const QUuid& commandID) = 0;
};
