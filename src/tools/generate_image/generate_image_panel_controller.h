#pragma once

#include <QThreadPool>
#include <QUrl>

#include <memory>

#include "capture/region_selector.h"
#include "core/hotkeys/key_press.h"
#include "core/presenters/palette_presenter.h"
#include "core/settings/app_preferences.h"
#include "platform/permissions.h"
#include "platform/system_info.h"
#include "services/clipboard_images.h"
#include "tools/generate_image/generate_image_model.h"
#include "tools/generate_image/generate_image_settings.h"
#include "tools/generate_image/history_list_model.h"
#include "tools/generate_image/image_history.h"
#include "tools/generate_image/image_reference_reader.h"

class Clock;
class LauncherOpener;
class ToastPresenter;

/// The Generate Image panel's flow. One picture is made at a time; a new start ends the one before. The panel stays up
/// while the user turns elsewhere, and what is being made goes on when it is hidden. Main thread only.
class GenerateImagePanelController final : public QObject {
  Q_OBJECT

 public:
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;
  /// Asks the user for image files, or for where to save to; answers once, with nothing when the user thinks better.
  struct Dialogs {
    std::function<void(std::function<void(QStringList)>)> chooseImages;
    std::function<void(const QString& suggestedName, std::function<void(QString)>)> chooseDestination;
  };

  struct Services {
    GenerateImageClient& client;
    GenerateImageStore& settings;
    ImageHistory& history;
    Pasteboard& pasteboard;
    RegionSelector& regions;
    Permissions& permissions;
    const SystemInfo& system;
    ToastPresenter& toasts;
    const AppPreferences& preferences;
    LauncherOpener& launcher;
    Clock& clock;
    Dialogs dialogs;
  };

  GenerateImagePanelController(Services services, PanelFactory makePanel);

  GenerateImageModel& model() { return model_; }
  HistoryListModel& historyList() { return historyList_; }
  const ImageHistory& history() const { return services_.history; }
  Clock& clock() { return services_.clock; }
  bool isShown() const { return isShown_; }

  /// Makes the panel ahead of its first show.
  void prepare();
  void show();
  /// What is being made goes on.
  void hide();
  void toggle();
  /// Whether the key was used; never while hidden. `hasSelection`: some of the prompt is selected.
  bool handleKey(const KeyPress& key, bool hasSelection = false);

  /// As soon as the references are read, if they are not yet.
  void generate();
  void cancel();
  /// The picture that is shown, once more.
  void regenerate();
  /// Takes the picture that is shown as the one to be changed.
  void editShown();
  void startNew();
  void setOptions(const ImageOptions& options);
  void nextSize();
  void nextQuality();

  void addSnip();
  void editSnip();
  void attachFiles();
  void attach(const QList<QUrl>& urls);
  void attachImage(const QByteArray& bytes);
  /// Encodes it in the background.
  void attachPicture(const QImage& picture);
  /// The image on the clipboard as a reference, else its text into the prompt.
  void paste();
  void pasteText();

  void copyShown();
  void saveShown();
  /// Shows an image of the history.
  void openHistory(int row);
  /// Takes its prompt, its options and the images that went with it over.
  void reusePrompt();
  /// Deletes the selected one, when asked twice.
  void removeSelected();

 Q_SIGNALS:
  /// Text for the place of the caret.
  void textPasted(const QString& text);

 private:
  enum class Use { reference, edit };

  PalettePresenter& panel();
  void reshow();
  void start(ImageRequest request);
  void finish(const ImageRequest& request, const GenerateImageClient::Outcome& outcome);
  void keep(const ImageRequest& request, const GeneratedImage& image);
  void announce(const GenerateImageClient::Outcome& outcome);
  void snip(const QString& label, const QString& icon, Use use);
  void refuseSnip();
  /// Reads and attaches in the background, one after the other.
  void prepareReference(std::function<QByteArray()> bytes, Use use);
  void takeReference(const std::optional<PreparedReference>& reference, Use use);
  void stopReading();
  /// Unless a picture had none: then those of the user stay.
  void restoreReferences(const ImageRequest& request);
  void save(const QString& path, const QByteArray& png);
  void moveInHistory(int delta);
  void escape();
  bool handleCommand(const KeyPress& key, bool hasSelection);
  bool handleHistoryKey(const KeyPress& key);
  bool handleReferenceKey(const KeyPress& key);
  void nextArea();

  Services services_;
  PanelFactory makePanel_;
  std::unique_ptr<PalettePresenter> panel_;
  GenerateImageModel model_;
  HistoryListModel historyList_;
  bool isShown_ = false;
  bool returnsToLauncher_ = false;
  bool isSnipping_ = false;
  int reading_ = 0;
  bool startsWhenRead_ = false;
  ClipboardImages images_;
  /// One thread: images are attached in the order in which they come.
  QThreadPool readers_;
  Job generation_;
  Job pasting_;
  Job attaching_;
  Job snipping_;
  Job opening_;
  Job saving_;
};
