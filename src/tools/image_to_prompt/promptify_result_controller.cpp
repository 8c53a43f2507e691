#include "tools/image_to_prompt/promptify_result_controller.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kCopiedFor = 1500ms;
constexpr std::uint32_t kC = 8;

}  // namespace

void PromptifyResultController::show(const QString& prompt, const QImage& source, const QString& styleLabel) {
  hide();
  model_.set(prompt, source, styleLabel, services_.textHeight(prompt));
  copy();
  panel_ = services_.makePanel();
  shown_ = true;
  panel_->present();
}

void PromptifyResultController::copy(const QString& text) {
  services_.pasteboard.writeText(text);
  model_.setCopied(true);
  copied_ = Job::start();
  services_.clock.after(kCopiedFor, copied_, [this] { model_.setCopied(false); });
}

void PromptifyResultController::hide() {
  if (!shown_) return;
  shown_ = false;
  panel_->dismiss();
}

bool PromptifyResultController::handleKey(const KeyPress& key) {
  if (!shown_) return false;
  if (key.keyCode == keycode::kEscape)
    hide();
  else if (key.isCommand(u'c', kC))
    copy();
  else
    return false;
  return true;
}
