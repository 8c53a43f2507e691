#pragma once

#include <QObject>

#include <functional>
#include <list>
#include <memory>

#include "capture/region_picker.h"
#include "core/hotkeys/key_press.h"
#include "core/presenters/palette_presenter.h"
#include "services/clipboard_images.h"
#include "tools/feedback/dropped_image.h"
#include "tools/feedback/report_clients.h"
#include "tools/feedback/report_model.h"
#include "tools/feedback/report_texts.h"

class LauncherOpener;

/// The flow that feedback and suggestions share: words are typed, snips are drawn while the panel steps aside, and
/// Command-Return sends both. What was written stays until it has been sent or thrown away, also while the panel is
/// closed. Main thread only.
class ReportPanelController : public QObject {
  Q_OBJECT

 public:
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;

  struct Services {
    RegionPicker regions;
    Pasteboard& pasteboard;
    ToastPresenter& toasts;
    LauncherOpener& launcher;
    const SystemInfo& system;
  };

  ReportPanelController(Services services, PanelFactory makePanel);

  virtual ReportModel& model() = 0;
  virtual const ReportTexts& texts() const = 0;
  /// What an empty message area asks for.
  virtual QString placeholder() const = 0;
  QString privacyLine() const { return ReportTexts::privacy(services_.system.systemName()); }
  bool isShown() const { return shown_; }

  /// Makes the panel ahead of its first show.
  void prepare();
  /// Shows the panel, or closes it.
  void toggle();
  /// Whether the key was used; never while the panel is closed or stands aside.
  bool handleKey(const KeyPress& key);

  /// Lets the user draw a region of the screen, which goes with the report.
  void addSnip();
  /// The image on the pasteboard goes with the report.
  void pasteSnip();
  /// The same of what was dropped on the panel, one image each.
  void dropSnips(std::vector<PasteboardData> dropped);
  /// Sends the report, if there is something to say.
  void submit();
  /// A new, empty report; not while one is on its way.
  void startOver();
  /// Closes the panel. What is on its way is broken off, and stays as it was written.
  void escape();

 protected:
  using Done = ReportSender::Done;

  /// Whose tile the launcher highlights.
  virtual QString toolID() const = 0;
  virtual void send(const JobRef& job, Done done) = 0;
  /// Keys of this panel alone; asked before the common ones.
  virtual bool handleOwnKey([[maybe_unused]] const KeyPress& key) { return false; }
  std::vector<QByteArray> snips();

 private:
  PalettePresenter& panel();
  void show();
  void hide();
  void take(const std::optional<ClipboardImage>& image);
  void stopAttaching();
  void finish(const std::expected<void, ReportError>& sent);
  void tellWhileHidden();
  bool handleCommand(const KeyPress& key);

  Services services_;
  ClipboardImages copied_;
  PanelFactory makePanel_;
  std::unique_ptr<PalettePresenter> panel_;
  bool shown_ = false;
  bool returnsToLauncher_ = false;
  Job snipping_;
  /// Images that are being read, ended with the report they are for.
  Job pasting_;
  std::list<DroppedImage> drops_;
  Job dropping_;
  Job sending_;
};
