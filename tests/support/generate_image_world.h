#pragma once

#include <QBuffer>

#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/fake_region_selector.h"
#include "support/service_world.h"
#include "tools/generate_image/generate_image_panel_controller.h"

/// A picture of one colour as PNG.
inline QByteArray pngPicture(QSize size = {48, 32}, const QColor& color = Qt::red, const char* format = "png") {
  QImage picture(size, QImage::Format_RGB32);
  picture.fill(color);
  QByteArray bytes;
  QBuffer file(&bytes);
  if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, format)) qFatal("no picture");
  return bytes;
}

/// The service's answer with that picture.
inline QByteArray imageAnswer(const QByteArray& png) {
  return R"({"images":[{"data":")" + png.toBase64() + R"(","mimeType":"image/png"}]})";
}

inline QByteArray headerOf(const HttpRequest& request, const QByteArray& name) {
  for (const auto& [key, value] : request.headers)
    if (key == name) return value;
  return {};
}

/// Generate Image over fakes; `Panel` is what the controller shows, a counter unless a test has a real one.
struct GenerateImageWorld : ServiceWorld {
  GenerateImageWorld() { useOwnHosts(); }

  struct CountingPanel final : PalettePresenter {
    explicit CountingPanel(bool& isUp) : up(isUp) {}
    void present() override { up = true; }
    void warmUp() override {}
    void dismiss() override { up = false; }
    bool& up;
  };

  QString historyFolder() const { return folders.file(QStringLiteral("GenerateImage/History")); }
  QStringList historyFiles() const { return QDir(historyFolder()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
  GenerateImagePanelController::Services controllerServices() {
    return {client,
            settings,
            history,
            pasteboard,
            regions,
            permissions,
            system,
            toasts,
            preferences,
            launcher,
            clock,
            {[this](auto answer) { chosenImages = std::move(answer); },
             [this](const QString& name, auto answer) {
               suggestedName = name;
               chosenDestination = std::move(answer);
             }}};
  }
  /// "title|detail" of the toast that is up.
  QString toast() const {
    if (toasts.shown.empty()) return {};
    return toasts.shown.back().first.title + QLatin1Char('|') + toasts.shown.back().first.detail;
  }

  FakePasteboard pasteboard;
  FakeRegionSelector regions;
  FakePermissions permissions;
  FakeSystem system;
  FakeToasts toasts;
  FakeLauncherOpener launcher;
  AppPreferences preferences{folders.file(QStringLiteral("app-settings.json"))};
  GenerateImageStore settings{folders.file(QStringLiteral("GenerateImage/settings.json"))};
  GenerateImageClient client{services};
  ImageHistory history{historyFolder()};
  std::function<void(QStringList)> chosenImages;
  std::function<void(QString)> chosenDestination;
  QString suggestedName;
  bool isPanelUp = false;
};
