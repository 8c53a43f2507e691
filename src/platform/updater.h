#pragma once

#include <QString>

/// Who brings new versions to this installation. As it stands, of one that came as a package: nothing is looked for or
/// downloaded by the program itself. Main thread only.
class Updater {
 public:
  virtual ~Updater() = default;

  /// One sentence for the user.
  virtual QString description() const { return QStringLiteral("Updates come with your package manager."); }
};
