#pragma once

#include <QString>

#include <utility>

/// What the errors of the tools have in common: they are told to the user, and all there is of one is its text.
/// `Error` is the class that derives from this one and makes them, a case each.
template <class Error>
class ToldError {
 public:
  /// There is no answer, or no service to ask; `text` is all of it.
  static Error of(const QString& text) { return Error(text); }

  const QString& description() const { return description_; }

 private:
  friend Error;
  explicit ToldError(QString description) : description_(std::move(description)) {}

  QString description_;
};
