#pragma once

#include <QString>

#include <expected>
#include <functional>

#include "base/job.h"

/// Who brings new versions to this installation. As it stands, of one that came as a package: nothing is looked for or
/// downloaded by the program itself. Main thread only.
class Updater {
 public:
  /// Nothing, or a sentence without its full stop.
  using Verified = std::function<void(std::expected<void, QString>)>;

  virtual ~Updater() = default;

  /// One sentence for the user.
  virtual QString description() const { return QStringLiteral("Updates come with your package manager."); }
  /// What downloads for this system and processor are named after ("macos-arm64"); empty where others bring them.
  virtual QString downloadName() const { return {}; }
  /// Answers, later, whether a downloaded file was made by `publisher`, in the system's own terms.
  virtual void verify([[maybe_unused]] const QString& path, [[maybe_unused]] const QString& publisher,
                      const JobRef& job, Verified answer) {
    job.later([answer = std::move(answer)] { answer(std::unexpected(QStringLiteral("nobody can tell here"))); });
  }
  /// Shows the user a downloaded file that puts the new version in place.
  virtual void open([[maybe_unused]] const QString& path) {}
};
