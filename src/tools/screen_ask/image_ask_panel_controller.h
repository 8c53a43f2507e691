#pragma once

#include <QObject>

#include <memory>

#include "core/presenters/palette_presenter.h"
#include "tools/asking/ask_conversation.h"
#include "tools/asking/ask_flow.h"
#include "tools/screen_ask/image_ask_client.h"
#include "tools/screen_ask/image_ask_model.h"

class LauncherOpener;

/// The flow of Screen ask's panel: questions about one capture, which is kept no longer than the panel is open. It
/// stays until it is closed, whoever has the keyboard. Main thread only.
class ImageAskPanelController final : public QObject, public AskFlow {
  Q_OBJECT

 public:
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;

  struct Services {
    ImageAskClient& client;
    Pasteboard& pasteboard;
    Clock& clock;
    LauncherOpener& launcher;
  };

  ImageAskPanelController(const Services& services, PanelFactory makePanel);

  ImageAskModel& model() { return model_; }
  bool isShown() const { return shown_; }

  /// Shows the panel with a capture, a PNG. `returnsToLauncher`: whether Escape leads back there.
  void show(const QByteArray& png, bool returnsToLauncher);
  /// Breaks off what is under way, and forgets the capture with all that was said about it.
  void close();
  /// Whether the key was used; never while hidden.
  bool handleKey(const KeyPress& key) override;

  void submit() override { conversation_.submit(); }
  bool copyLatestAnswer() override { return conversation_.copyLatestAnswer(); }
  void copy(const QString& text) override { conversation_.copy(text); }
  /// Forgets what was said; the capture stays.
  void startOver() override { conversation_.startOver(); }

 private:
  PalettePresenter& panel();
  void escape();

  Services services_;
  PanelFactory makePanel_;
  std::unique_ptr<PalettePresenter> panel_;
  ImageAskModel model_;
  AskConversation conversation_;
  bool shown_ = false;
  bool returnsToLauncher_ = false;
};
