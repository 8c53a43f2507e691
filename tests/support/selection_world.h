#pragma once

#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "tools/keystrokes/keystroke_sender.h"
#include "tools/text_transform/copying_selection_reader.h"
#include "tools/text_transform/typing_selection_replacer.h"

inline PasteboardContents holding(const QByteArray& text) {
  return {{{QStringLiteral("text"), text}, {QStringLiteral("image"), "pixels"}}};
}

/// A program in front of which the tool stands, and the clipboard between them.
struct SelectionWorld {
  FakeKeyTargets targets;
  FakeSelectedText selectedText;
  FakePasteboard pasteboard;
  FakeKeyEvents events;
  FakePermissions permissions;
  FakeClock clock;
  KeystrokeSender keys{events, permissions};
  DisplacedClipboard displaced{{pasteboard, clock}};
  CopyingSelectionReader reader{{targets, selectedText, pasteboard, displaced, keys, clock}};
  TypingSelectionReplacer replacer{{targets, selectedText, pasteboard, displaced, keys, clock}};
  Job job = Job::start();
  std::vector<Selection> answers;
  std::vector<std::expected<SelectionReplacer::Outcome, KeyEventError>> outcomes;

  SelectionWorld() { pasteboard.copy(holding("earlier")); }

  /// Ctrl+C in the program copies this.
  void select(const QByteArray& text) {
    events.performed = [this, text] { pasteboard.copy({{{QStringLiteral("text"), text}}}); };
  }
  void startReading() {
    reader.readSelectedText(job, [this](const Selection& selection) { answers.push_back(selection); });
  }
  void replace(const QString& result, const Selection& selection) {
    replacer.replace(selection, result, job, [this](const auto& outcome) { outcomes.push_back(outcome); });
  }
  void replace(const QString& result) { replace(result, copied(QStringLiteral("selected"))); }
  /// As a reading leaves it: the copy is on the clipboard.
  Selection copied(const QString& text) {
    pasteboard.copy(holding(text.toUtf8()));
    const auto earlier = std::make_shared<const PasteboardContents>(holding("earlier"));
    const Selection selection{text, earlier, KeyTarget{7}, pasteboard.changes};
    displaced.displace(selection);
    return selection;
  }
  void pass(std::chrono::milliseconds duration) { clock.pass(duration); }
  QString typed() const {
    QString text;
    for (const KeySequence& sequence : events.sequences)
      for (const KeyStep& step : sequence)
        if (const auto* part = std::get_if<TypeText>(&step)) text += part->text;
    return text;
  }
};
