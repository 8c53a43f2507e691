#pragma once

#include <chrono>

#include "base/clock.h"
#include "core/palette/palette_controller.h"
#include "tools/session_history/session_preview.h"
#include "tools/session_history/session_scanner.h"
#include "tools/session_history/vibe_history_palette_model.h"
#include "tools/session_history/vibe_history_settings.h"

class CommandTyper;
class Pasteboard;
class ToastPresenter;

/// The history palette's flow: each show scans anew in the background; choosing types the resume command, ⌘C copies it.
/// Main thread only.
class VibeHistoryPaletteController final : public QObject, public PaletteController {
  Q_OBJECT

 public:
  /// Lets the panel's disappearance settle, so that the text reaches the application behind it.
  static constexpr std::chrono::milliseconds kTypingDelay{120};
  /// How often the times in the rows are brought up to date.
  static constexpr std::chrono::seconds kTick{15};

  struct Services {
    const VibeHistoryStore& settings;
    const SessionTraceScanner& scanner;
    CommandTyper& typer;
    Pasteboard& pasteboard;
    ToastPresenter& toasts;
    Clock& clock;
    LauncherOpener& launcher;
  };

  VibeHistoryPaletteController(Services services, PanelFactory makePanel);

  VibeHistoryPaletteModel& model() { return model_; }
  /// Of the selected session; empty until it has been read.
  const SessionPreview& preview() const { return preview_; }

  /// Hides the palette and types the resume command into what has the focus then.
  void insert(const VibeSession& session, bool pressReturn);
  /// Hides the palette and puts the selected session's resume command on the pasteboard.
  void copySelected();

 Q_SIGNALS:
  void previewChanged();

 protected:
  PaletteListModel& list() override { return model_; }
  void begin() override;
  void chooseSelected(const KeyPress& key) override;
  bool handleOwnKey(const KeyPress& key) override;
  void ended() override;

 private:
  void scan();
  void tick();
  void followSelection();
  QDateTime now() const;

  Services services_;
  VibeHistoryPaletteModel model_;
  SessionPreview preview_;
  /// The transcript that `preview_` is of, or will be.
  std::string previewed_;
  Job scan_;
  Job ticking_;
  Job previewing_;
  /// Lives as long as the controller: one command chosen soon after another drops neither.
  Job typing_ = Job::start();
};
