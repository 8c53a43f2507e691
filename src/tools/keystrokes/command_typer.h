#pragma once

#include <QString>

#include "base/job.h"

class KeystrokeSender;
class Pasteboard;
class ToastPresenter;

/// Types commands into the focused application. One that is refused, or the rest of one that breaks off, goes to the
/// clipboard, and a toast says so; without permission to type the system's prompt is all that happens. Main thread
/// only.
class CommandTyper {
 public:
  CommandTyper(KeystrokeSender& keys, Pasteboard& pasteboard, ToastPresenter& toasts)
      : keys_(keys), pasteboard_(pasteboard), toasts_(toasts) {}

  void type(const QString& command, bool pressReturn);

 private:
  void copy(const QString& text, const QString& title, const QString& detail);

  KeystrokeSender& keys_;
  Pasteboard& pasteboard_;
  ToastPresenter& toasts_;
  /// Lives as long as this: one command soon after another drops neither.
  Job typing_ = Job::start();
};
