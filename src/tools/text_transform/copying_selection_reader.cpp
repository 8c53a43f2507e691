#include "tools/text_transform/copying_selection_reader.h"

#include "base/clock.h"
#include "platform/selected_text.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace std::chrono_literals;

namespace {

/// C.
constexpr std::uint32_t kCopyKey = 8;
constexpr auto kBetweenLooks = 20ms;
/// Half a second: what copies nothing is known soon.
constexpr int kLooks = 25;

}  // namespace

void CopyingSelectionReader::readSelectedText(const JobRef& job, Answer answer) {
  readings_.push_back({job, std::move(answer), {}, {}});
  if (readings_.size() == 1) startNext();
}

void CopyingSelectionReader::startNext() {
  while (!readings_.empty() && !readings_.front().job.isRunning()) readings_.pop_front();
  if (readings_.empty()) return;
  run_ = Job::start();
  Reading& reading = readings_.front();
  reading.selection.owner = services_.targets.current();
  services_.selectedText.read(reading.selection.owner, run_,
                              [this](std::optional<QString> text) { takeHandedOver(std::move(text)); });
}

void CopyingSelectionReader::takeHandedOver(std::optional<QString> text) {
  Reading& reading = readings_.front();
  reading.selection.text = std::move(text);
  if (reading.selection.text || !services_.selectedText.isCopiedByShortcut(reading.selection.owner)) return finish();
  services_.pasteboard.keep(run_, [this](PasteboardContents earlier) { copy(std::move(earlier)); });
}

void CopyingSelectionReader::copy(PasteboardContents earlier) {
  Reading& reading = readings_.front();
  if (!reading.job.isRunning()) return finish();
  reading.earlier = std::move(earlier);
  reading.count = services_.pasteboard.changeCount();
  const auto pressed = [this](const std::expected<void, KeyEventError>& result) {
    if (result) return lookAgain();
    readings_.front().selection.obstacle = result.error().description();
    finish();
  };
  services_.keys.sendCommandKey(kCopyKey, run_.bind(pressed));
}

void CopyingSelectionReader::lookAgain() {
  services_.clock.after(kBetweenLooks, run_, [this] { look(); });
}

void CopyingSelectionReader::look() {
  Reading& reading = readings_.front();
  // The count, not the text: what is selected may equal what was copied before.
  if (services_.pasteboard.changeCount() != reading.count) return takeCopy();
  if (++reading.looks == kLooks) return finish();
  lookAgain();
}

void CopyingSelectionReader::takeCopy() {
  Reading& reading = readings_.front();
  reading.selection.previousClipboard = std::move(reading.earlier);
  reading.selection.copyCount = services_.pasteboard.changeCount();
  services_.pasteboard.readText(run_, [this](std::optional<QString> text) {
    readings_.front().selection.text = std::move(text);
    finish();
  });
}

void CopyingSelectionReader::finish() {
  const Reading reading = std::move(readings_.front());
  readings_.pop_front();
  run_ = Job();
  if (!reading.job.isRunning() && reading.selection.previousClipboard)
    services_.pasteboard.restore(*reading.selection.previousClipboard);
  // Before the answer, which may ask for a reading itself.
  startNext();
  if (reading.job.isRunning()) reading.answer(reading.selection);
}
