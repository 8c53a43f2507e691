#pragma once

#include <vector>

#include "tools/text_transform/selection.h"

/// Answers with what the test says is selected, on the next turn of the event loop.
class FakeSelectionReader final : public SelectionReader {
 public:
  void readSelectedText(const JobRef& job, Answer answer) override {
    ++reads;
    job.later([this, answer = std::move(answer)] { answer(selection); });
  }

  Selection selection;
  int reads = 0;
};

/// Remembers what would be typed, and what would be put back.
class FakeSelectionReplacer final : public SelectionReplacer {
 public:
  void replace(const Selection& selection, const QString& result, const JobRef& job, Done done) override {
    replaced.emplace_back(selection, result);
    waiting = job.bind(std::move(done));
  }
  void restore(const Selection& selection) override {
    if (selection.previousClipboard) restored.push_back(*selection.previousClipboard);
  }
  /// Ends the typing.
  void finish(const std::expected<Outcome, KeyEventError>& outcome) { waiting(outcome); }

  std::vector<std::pair<Selection, QString>> replaced;
  std::vector<PasteboardContents> restored;
  Done waiting;
};
