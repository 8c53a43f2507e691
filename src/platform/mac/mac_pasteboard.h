#pragma once

#include "platform/pasteboard.h"

/// The system's own, which bounds how long an owner may take.
///
/// It counts changes and does not say whose they are, and that nobody has touched a key since does not tell either:
/// what is copied on another device of the user's, a script, and a password manager that takes its secret back move the
/// count in the same way. So `isChangeBy` stays false, and a copy that comes after we gave up on it stays: undoing it
/// could throw away what the user has copied, or bring back what has just been cleared.
class MacPasteboard final : public Pasteboard {
 public:
  void writeText(const QString& text) override;
  void writeImage(const QByteArray& png) override;
  std::int64_t changeCount() const override;
  void readText(const JobRef& job, ReadText answer) override;
  void keep(const JobRef& job, Kept answer) override;
  void restore(const PasteboardContents& contents) override;
  void read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) override;
};
