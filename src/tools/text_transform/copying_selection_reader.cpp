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

CopyingSelectionReader::~CopyingSelectionReader() {
  if (readings_.empty() || !readings_.front().before.earlier) return;
  Reading& reading = readings_.front();
  reading.selection.copyCount = services_.pasteboard.changeCount();
  if (reading.selection.copyCount == reading.before.count && !reading.before.isDisplaced) return;
  reading.selection.previousClipboard = reading.before.earlier;
  services_.displaced.displace(reading.selection);
  services_.displaced.restore(reading.selection);
}

void CopyingSelectionReader::readSelectedText(const JobRef& job, Answer answer) {
  readings_.push_back({job, std::move(answer), {}, {}, {}});
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
  services_.displaced.prepare(run_, [this](const DisplacedClipboard::Before& before) { copy(before); });
}

void CopyingSelectionReader::copy(const DisplacedClipboard::Before& before) {
  Reading& reading = readings_.front();
  reading.before = before;
  if (before.isDisplaced) {
    reading.selection.previousClipboard = before.earlier;
    reading.selection.copyCount = before.count;
  }
  if (!reading.job.isRunning()) return finish();
  services_.keys.sendCommandKey(kCopyKey, run_.bind([this](const auto& pressed) { waitForCopy(pressed); }));
}

void CopyingSelectionReader::waitForCopy(const std::expected<void, KeyEventError>& pressed) {
  Reading& reading = readings_.front();
  if (!pressed) {
    reading.selection.obstacle = pressed.error().description();
    return finish();
  }
  reading.input = services_.targets.watchInput();
  lookAgain();
}

void CopyingSelectionReader::lookAgain() {
  services_.clock.after(kBetweenLooks, run_, [this] { look(); });
}

void CopyingSelectionReader::look() {
  Reading& reading = readings_.front();
  // The count, not the text: what is selected may equal what was copied before.
  if (services_.pasteboard.changeCount() != reading.before.count) return takeCopy();
  if (++reading.looks == kLooks) return missCopy();
  lookAgain();
}

void CopyingSelectionReader::takeCopy() {
  Reading& reading = readings_.front();
  reading.selection.previousClipboard = reading.before.earlier;
  reading.selection.copyCount = services_.pasteboard.changeCount();
  services_.pasteboard.readText(run_, [this](std::optional<QString> text) {
    readings_.front().selection.text = std::move(text);
    services_.displaced.displace(readings_.front().selection);
    finish();
  });
}

void CopyingSelectionReader::missCopy() {
  Reading& reading = readings_.front();
  services_.displaced.undoLateCopy({reading.before, reading.selection.owner, std::move(reading.input)});
  finish();
}

void CopyingSelectionReader::finish() {
  const Reading reading = std::move(readings_.front());
  readings_.pop_front();
  run_ = Job();
  if (!reading.job.isRunning()) services_.displaced.restore(reading.selection);
  // Before the answer, which may ask for a reading itself.
  startNext();
  if (reading.job.isRunning()) reading.answer(reading.selection);
}
