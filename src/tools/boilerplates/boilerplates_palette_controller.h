#pragma once

#include <chrono>
#include <functional>

#include "base/clock.h"
#include "core/palette/palette_controller.h"
#include "tools/boilerplates/boilerplates_palette_model.h"
#include "tools/boilerplates/template_copy.h"
#include "tools/session_history/session_scanner.h"
#include "tools/session_history/vibe_history_settings.h"

class SettingsOpener;
class ToastPresenter;

/// The way from a boilerplate to a project: which, under what name, where; then the copy, in the background, which
/// goes on while the palette is hidden. Escape goes back one step, and ends a copy. Main thread only.
class BoilerplatesPaletteController final : public QObject, public PaletteController {
  Q_OBJECT

 public:
  /// How often the figures of a copy are brought up to date.
  static constexpr std::chrono::milliseconds kTick{100};
  /// A copy whose folder was chosen in a dialog is shown when it takes longer than this.
  static constexpr std::chrono::milliseconds kPatience{400};

  /// Asks for a folder, beginning at `start`, and hands it over unless the user declines.
  using FolderChooser = std::function<void(const QString& start, std::function<void(const QString&)> chosen)>;

  struct Services {
    BoilerplateStore& store;
    /// Says which agents' sessions count.
    const VibeHistoryStore& history;
    const SessionTraceScanner& scanner;
    SettingsOpener& settings;
    ToastPresenter& toasts;
    Clock& clock;
    LauncherOpener& launcher;
    FolderChooser chooseFolder;
  };

  BoilerplatesPaletteController(Services services, PanelFactory makePanel);

  BoilerplatesPaletteModel& model() { return model_; }
  bool isCopying() const { return copying_.isRunning(); }
  /// Return, or a click on the selected row.
  void choose();

 Q_SIGNALS:
  /// A project was made; `path` is its folder. `isWaiting`: the user has not put the palette away meanwhile.
  void created(const QString& path, bool isWaiting);

 protected:
  PaletteListModel& list() override { return model_; }
  void begin() override;
  void chooseSelected(const KeyPress& key) override;
  void escape() override;
  void ended() override { isAwaited_ = false; }

 private:
  void findPlaces();
  void askForFolder();
  void create(const QString& place);
  void followProgress();
  void finish(const QString& place, const std::expected<MadeProject, CopyError>& made);

  Services services_;
  BoilerplatesPaletteModel model_;
  QStringList places_;
  std::shared_ptr<CopyProgress> progress_;
  bool isAwaited_ = false;
  Job finding_;
  Job copying_;
};
