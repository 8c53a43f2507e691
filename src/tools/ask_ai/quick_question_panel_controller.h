#pragma once

#include <QObject>
#include <QUrl>

#include <memory>

#include "capture/region_selector.h"
#include "core/presenters/palette_presenter.h"
#include "platform/permissions.h"
#include "platform/system_info.h"
#include "services/clipboard_images.h"
#include "tools/ask_ai/quick_question_client.h"
#include "tools/ask_ai/quick_question_model.h"
#include "tools/asking/ask_conversation.h"
#include "tools/asking/ask_flow.h"

class LauncherOpener;

/// The flow of Ask AI's panel: questions, what is attached to them, and their answers. The panel goes when the user
/// turns elsewhere; the conversation stays, and a question under way is answered all the same. Main thread only.
class QuickQuestionPanelController final : public QObject, public AskFlow {
  Q_OBJECT

 public:
  /// Asks the user for images; answers at most once, with nothing when the user thinks better of it.
  using Chooser = std::function<void(std::function<void(QList<QUrl>)>)>;
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;

  struct Services {
    QuickQuestionClient& client;
    Pasteboard& pasteboard;
    Clock& clock;
    RegionSelector& regions;
    Permissions& permissions;
    const SystemInfo& system;
    LauncherOpener& launcher;
    Chooser choose;
  };

  QuickQuestionPanelController(Services services, PanelFactory makePanel);

  QuickQuestionModel& model() { return model_; }
  bool isShown() const { return shown_; }
  /// Whether the panel is away for as long as the user chooses a file or a region.
  bool suspendAutoHide() const { return suspendAutoHide_; }

  /// Makes the panel ahead of its first show.
  void prepare();
  /// Shows the panel, or hides it when it is shown.
  void toggle();
  void show();
  void hide();
  /// The user has turned elsewhere.
  void lostKeyboard();
  /// Whether the key was used; never while hidden.
  bool handleKey(const KeyPress& key) override;

  /// Asks what is typed, as soon as everything is attached.
  void submit() override;
  /// Attaches a region of the screen.
  void addSnip();
  /// Lets the user choose images to attach.
  void attachFile();
  /// Attaches the image on the clipboard; when there is none, its text is for the field. False when nothing can be
  /// attached now.
  bool pasteImage();
  void attachFiles(const QList<QUrl>& urls);
  void attachImage(const QImage& image);
  bool copyLatestAnswer() override { return conversation_.copyLatestAnswer(); }
  void copy(const QString& text) override { conversation_.copy(text); }
  /// Breaks off what is under way, closes, and returns to the launcher if that opened the panel.
  void escapeBack();
  void startOver() override;

 Q_SIGNALS:
  /// What is pasted comes in a moment: its place is where the cursor is now.
  void pasting();
  /// Text from the clipboard, for the field.
  void textPasted(const QString& text);

 private:
  using Made = std::vector<MadeAttachment>;

  PalettePresenter& panel();
  /// Hides the panel until `comeBack`.
  void stepAside();
  void comeBack();
  void takeSnip(const std::optional<QByteArray>& png);
  void pasteText();
  template <class Make>
  void attach(Make make);
  void take(Made made);
  void settle();
  void endAttaching();
  void showNoPermission();

  Services services_;
  PanelFactory makePanel_;
  ClipboardImages images_;
  std::unique_ptr<PalettePresenter> panel_;
  QuickQuestionModel model_;
  AskConversation conversation_;
  bool shown_ = false;
  bool suspendAutoHide_ = false;
  bool isSnipping_ = false;
  bool returnsToLauncher_ = false;
  bool submitsWhenAttached_ = false;
  /// How many attachments and pastes are.
  int attachmentsUnderWay_ = 0;
  Job attaching_;
  Job away_;
};
