#pragma once

#include <functional>
#include <memory>

#include "base/clock.h"
#include "base/job.h"
#include "core/hotkeys/key_press.h"
#include "core/presenters/palette_presenter.h"
#include "platform/pasteboard.h"
#include "tools/image_to_prompt/promptify_result_model.h"

/// The card with a prompt, which is on the clipboard already when it shows. It stays until it is closed or the next
/// one takes its place. Main thread only.
class PromptifyResultController final {
 public:
  struct Services {
    Pasteboard& pasteboard;
    Clock& clock;
    /// How high a prompt is when it is `promptcard::kTextWidth` wide.
    std::function<double(const QString&)> textHeight;
    /// Makes the card for what the model holds then.
    std::function<std::unique_ptr<PalettePresenter>()> makePanel;
  };

  explicit PromptifyResultController(Services services) : services_(std::move(services)) {}

  PromptifyResultModel& model() { return model_; }
  bool isShown() const { return shown_; }

  /// `source` may be null, `styleLabel` empty.
  void show(const QString& prompt, const QImage& source, const QString& styleLabel);
  void copy() { copy(model_.prompt()); }
  void copy(const QString& text);
  void hide();
  /// Whether the key was used; never while hidden.
  bool handleKey(const KeyPress& key);

 private:
  Services services_;
  PromptifyResultModel model_;
  std::unique_ptr<PalettePresenter> panel_;
  bool shown_ = false;
  Job copied_;
};
