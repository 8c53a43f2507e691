#pragma once

#include <QObject>

#include <functional>
#include <memory>

#include "base/job.h"
#include "core/hotkeys/key_press.h"
#include "core/presenters/palette_presenter.h"
#include "core/settings/app_preferences.h"
#include "tools/file_drop/bulk_upload_model.h"

class BulkUploadClient;
class LauncherOpener;
class Pasteboard;
class ToastPresenter;

/// The drop window's flow: items come by drop, paste or choice and are measured in the background; Return or a click
/// uploads them, one upload at a time. The window stays until it is closed, whoever has the keyboard. Main thread only.
class BulkUploadPanelController final : public QObject {
  Q_OBJECT

 public:
  enum class Choice { files, folder };
  /// Asks the user for files or a folder; answers at most once, with nothing when the user thinks better of it.
  using Chooser = std::function<void(Choice, std::function<void(QList<QUrl>)>)>;
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;

  struct Services {
    BulkUploadClient& client;
    Pasteboard& pasteboard;
    ToastPresenter& toasts;
    const AppPreferences& preferences;
    LauncherOpener& launcher;
    Chooser choose;
  };

  BulkUploadPanelController(Services services, PanelFactory makePanel);

  BulkUploadModel& model() { return model_; }
  bool isShown() const { return shown_; }

  /// Makes the panel ahead of its first show.
  void prepare();
  void show();
  void hide();
  /// Whether the key was used; never while hidden.
  bool handleKey(const KeyPress& key);

  void add(const QList<QUrl>& urls);
  void paste();
  void choose(Choice choice);
  /// Uploads what is in the list; as soon as it is measured, if it is not yet.
  void upload();
  /// Breaks the upload off; the list stays.
  void cancel();
  /// Empties the list.
  void reset();
  void copyResult();
  void perform(BulkUploadModel::ResultAction action);

 private:
  PalettePresenter& panel();
  void measure(const QStringList& paths);
  void takeMeasured(const std::vector<DroppedItem>& items);
  void start();
  void finish(const QUrl& link);
  void tryAgain();
  void escape();
  bool handleCommand(const KeyPress& key);
  bool handleListKey(const KeyPress& key);
  bool handleResultKey(const KeyPress& key);

  Services services_;
  PanelFactory makePanel_;
  std::unique_ptr<PalettePresenter> panel_;
  BulkUploadModel model_;
  bool shown_ = false;
  bool returnsToLauncher_ = false;
  bool startsWhenMeasured_ = false;
  /// Of everything in the list; ended when it is emptied.
  Job measuring_;
  Job upload_;
  Job pasting_;
};
