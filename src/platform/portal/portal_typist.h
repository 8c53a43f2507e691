#pragma once

#include <memory>
#include <stop_token>

#include "platform/portal/portal_key_steps.h"
#include "platform/portal/portal_keyboard.h"

/// Types through the desktop's portal, into whatever has the focus, one sequence at a time. Each key is answered
/// before the next one is sent; where the portal takes no more, the rest of the text is handed back. Main thread only.
class PortalTypist {
 public:
  using Done = KeyEvents::Done;

  /// What this program knows of the keyboard.
  struct Sources {
    /// As it is now.
    std::function<Layout()> layout;
    /// Whether what is typed would go to this program itself.
    std::function<bool()> isOurs;
  };

  /// `permission` is the path of the file that keeps what the user has allowed.
  PortalTypist(const QDBusConnection& bus, std::shared_ptr<Portal> portal, QString permission, Sources sources);

  /// As `KeyEvents::perform`; begins when the one before is done. A question to the user that he does not answer at
  /// once is `refused`: by the time he has, the focus may be elsewhere.
  void type(const KeySequence& sequence, std::stop_token stop, Done done);

 private:
  void begin();
  void waitForPortal();
  void open();
  void lookForLock();
  void plugIn();
  void waitForHands();
  void next();
  void pressed(std::size_t taken);
  void refuse(const QString& reason);
  void finish(const std::expected<void, KeyEventError>& result);

  QDBusConnection bus_;
  std::shared_ptr<Portal> portal_;
  PortalKeyboard keyboard_;
  Sources sources_;
  KeySequence sequence_;
  std::stop_token stop_;
  Done done_;
  std::vector<PortalStep> steps_;
  std::size_t at_ = 0;
  /// The sequence that is being typed.
  Job run_;
  /// Until the desktop has to have answered.
  Job patience_;
};
