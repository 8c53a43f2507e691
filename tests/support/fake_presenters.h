#pragma once

#include <QStringList>

#include <memory>
#include <utility>
#include <vector>

#include "core/presenters/fresh_start.h"
#include "core/presenters/launcher_opener.h"
#include "core/presenters/palette_presenter.h"
#include "core/presenters/settings_opener.h"
#include "core/presenters/toast_presenter.h"
#include "core/presenters/window_opener.h"

class FakeToasts final : public ToastPresenter {
 public:
  void show(ToastContent content, std::chrono::milliseconds duration) override {
    shown.emplace_back(std::move(content), duration);
  }
  void dismiss(bool) override { ++dismissals; }
  std::vector<std::pair<ToastContent, std::chrono::milliseconds>> shown;
  int dismissals = 0;
};

class FakeSettingsOpener final : public SettingsOpener {
 public:
  void openSettings() override { opened.append(QStringLiteral("settings")); }
  void openSettings(SettingsTab tab) override { opened.append(QStringLiteral("tab %1").arg(static_cast<int>(tab))); }
  void openToolSettings(const QString& toolID) override { opened.append(toolID); }
  void openCommandSettings(const QUuid& commandID) override { opened.append(commandID.toString(QUuid::WithoutBraces)); }
  QStringList opened;
};

class FakeLauncherOpener final : public LauncherOpener {
 public:
  void showLauncher(const QString& selectedToolID) override { shown.append(selectedToolID); }
  bool takeStartedFromLauncher() override { return std::exchange(startedFromLauncher, false); }
  QStringList shown;
  bool startedFromLauncher = false;
};

class FakeWindowOpener final : public WindowOpener {
 public:
  void openWindow(AppWindow window) override { opened.push_back(window); }
  std::vector<AppWindow> opened;
};

class FakeFreshStart final : public FreshStart {
 public:
  void deleteDataAndStartAnew() override { ++starts; }
  int starts = 0;
};

/// Stands for a panel that is the test's; its controller owns what it shows.
template <class Panel>
std::unique_ptr<PalettePresenter> borrowed(Panel& panel) {
  struct Borrowed final : PalettePresenter {
    explicit Borrowed(Panel& target) : panel(target) {}
    void present() override { panel.present(); }
    void warmUp() override { panel.warmUp(); }
    void dismiss() override { panel.dismiss(); }
    Panel& panel;
  };
  return std::make_unique<Borrowed>(panel);
}
