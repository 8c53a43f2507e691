#pragma once

#include <QJsonObject>

#include <memory>
#include <vector>

#include "app/app_delegate.h"
#include "core/hotkeys/hotkey_center.h"
#include "core/net/app_channel.h"
#include "core/presenters/fresh_start.h"
#include "core/presenters/settings_opener.h"
#include "core/tools/tool.h"

/// The composition root: makes the one instance of everything, in the order in which they need each other, and hands
/// them down by reference. Main thread only; needs a QApplication.
class Application : public QObject, private SettingsOpener, private FreshStart {
  Q_OBJECT

 public:
  /// What the event loop returns when the program is to be started again, as if for the first time.
  static constexpr int kStartAnew = 75;

  Application();
  ~Application() override;

  /// Runs the launch sequence; false when another Vantle is running already.
  bool start();

 private:
  struct Parts;

  void openSettings() override;
  void openSettings(SettingsTab tab) override;
  void openToolSettings(const QString& toolID) override;
  void openCommandSettings(const QUuid& commandID) override;
  void deleteDataAndStartAnew() override;

  std::vector<std::unique_ptr<Tool>> makeTools();
  /// What no press of a shortcut should have to make.
  void warmUp();
  SettingsViewFactory frequentCLIsSettings();
  AppDelegate::Effects effects();
  void run(AppAction action);
  void announceUpdate();
  void summon(const QString& target);
  void answer(const QJsonObject& request, const AppServer::Reply& reply);
  QJsonObject done(const QJsonObject& request);
  void locateService(const AppServer::Reply& reply);
  void reload();
  QJsonObject doctorAnswer() const;
  QString ownerName(const HotkeyCenter::Refused& entry) const;

  void terminate();

  std::unique_ptr<Parts> parts_;
  bool startsAnew_ = false;
};
