#pragma once

#include <QObject>

#include <memory>

#include "platform/portal/portal_key_steps.h"
#include "platform/portal/portal_session.h"

/// A keyboard that the desktop's portal lends: what is pressed on it goes to whatever has the focus. The desktop asks
/// the user, once: what he has allowed is kept in a file, and his no holds as long as this program runs. Main thread
/// only.
class PortalKeyboard final : public QObject {
  Q_OBJECT

 public:
  using Opened = std::function<void(std::expected<void, PortalError>)>;
  /// The number of keys that were taken, before the first one that was not.
  using Pressed = std::function<void(std::size_t taken)>;

  /// `permission` is the path of the file.
  PortalKeyboard(QDBusConnection bus, const std::shared_ptr<Portal>& portal, QString permission);

  /// Tells when keys can be pressed, which the user may have to allow first; at once while they can.
  void open(const JobRef& job, Opened opened);
  /// Presses the keys in order, each when the one before has been answered.
  void press(const std::vector<PortalKey>& keys, const JobRef& job, Pressed pressed);
  /// Nothing more is pressed for now. Desktops show as long as a program can type, so it is given back after a while,
  /// where it is to be had again without a question.
  void rest();

 private:
  struct Batch {
    std::vector<PortalKey> keys;
    JobRef job;
    Pressed pressed;
  };

  void selectKeyboard();
  void start();
  void take(const QVariantMap& given);
  void fail(const PortalError& error);
  void finish(const std::expected<void, PortalError>& result);
  void request(PortalCall call, std::function<void(const QVariantMap&)> done);
  void pressFrom(std::size_t index, const std::shared_ptr<const Batch>& batch);
  void forget();
  void close();
  void sessionEnded();

  QDBusConnection bus_;
  PortalSession session_;
  QString permission_;
  /// The session has been given the keyboard.
  bool isOpen_ = false;
  bool isPermissionKept_ = false;
  std::optional<PortalError> no_;
  std::vector<Opened> waiting_;
  Job opening_;
  Job resting_;
};
