#pragma once

#include "platform/updater.h"

/// New versions are disk images, signed by whoever publishes them; the user drags the application out of one. Nothing
/// in it is macOS's own but the program that looks at the signature.
class MacUpdater final : public Updater {
 public:
  explicit MacUpdater(QString codesign = QStringLiteral("/usr/bin/codesign")) : codesign_(std::move(codesign)) {}

  QString description() const override;
  QString downloadName() const override;
  /// `publisher` is the ten letters and digits that the maker of the system gave to the team.
  void verify(const QString& path, const QString& publisher, const JobRef& job, Verified answer) override;
  void open(const QString& path) override;

 private:
  QString codesign_;
};
