#pragma once

#include <QString>

/// The anonymous id of this installation, made once at random and kept in a file; never derived from user or machine.
class InstallIdentity {
 public:
  explicit InstallIdentity(QString path) : path_(std::move(path)) {}

  /// Upper-case hyphenated UUID, read (or made and written) at the first call. When it cannot be written it holds for
  /// this run only.
  const QString& id();

 private:
  QString path_;
  QString id_;
};
