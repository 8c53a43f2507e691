#pragma once

#include <optional>

#include "base/clock.h"
#include "core/palette/palette_controller.h"
#include "tools/inject_md/inject_md_palette_model.h"
#include "tools/session_history/vibe_history_settings.h"

class ToastPresenter;

/// The palette's flow: a file, a project, the question about what is there, then the write. The disk is touched in the
/// background only. Main thread only.
class InjectMDPaletteController final : public QObject, public PaletteController {
  Q_OBJECT

 public:
  /// Lets the user choose a folder and hands it over, or none.
  using FolderAnswer = std::function<void(const std::optional<QString>& folder)>;
  using FolderChooser = std::function<void(const QString& title, FolderAnswer answered)>;

  struct Services {
    const InjectMDStore& settings;
    const VibeHistoryStore& history;
    const SessionTraceScanner& scanner;
    ToastPresenter& toasts;
    Clock& clock;
    LauncherOpener& launcher;
    FolderChooser chooseFolder;
    /// The user's home folder.
    QString home;
  };

  InjectMDPaletteController(Services services, PanelFactory makePanel);

  InjectMDPaletteModel& model() { return model_; }

  /// Takes the row for an answer.
  void choose(int row);

 Q_SIGNALS:
  /// The user wants to read on, or back, in what overwriting would change.
  void turned(int pages);

 protected:
  PaletteListModel& list() override { return model_; }
  void begin() override;
  void chooseSelected(const KeyPress& key) override;
  bool handleOwnKey(const KeyPress& key) override;
  void escape() override;
  void ended() override;

 private:
  struct Question {
    QString folder;
    ExistingFile existing;
  };
  /// How far the user was when the folder chooser took the palette's place.
  struct Pause {
    InjectMDSettings settings;
    MDDocument document;
    QString query;
  };

  void scan();
  void start();
  void resume(const Pause& pause);
  bool asksForDocument() const;
  void askForProject();
  void chooseFolder();
  void takeFolder(const Pause& pause, const std::optional<QString>& folder);
  void inject(const MDDocument& document, const QString& folder);
  void ask(const MDDocument& document, const QString& folder, const ExistingFile& existing);
  void write(const MDDocument& document, const QString& folder, MDInjector::Overwrite overwrite);
  void report(const InjectionError& error);

  Services services_;
  InjectMDPaletteModel model_;
  /// As they were when the palette was opened.
  InjectMDSettings settings_;
  MDDocument document_;
  std::optional<Question> question_;
  std::optional<Pause> pause_;
  Job scan_;
  Job looking_;
  /// Lives as long as the controller: a file chosen soon after another drops neither.
  Job writing_ = Job::start();
};
