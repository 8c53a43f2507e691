#pragma once

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>

/// A desktop portal on the session bus, on a thread of its own, that plays what the test has written into `answer`.
class FakePortal {
 public:
  /// What it does when it is asked for something that goes through a request object.
  struct Answer {
    enum class Kind { respond, stayQuiet, refuseTheCall, vanish };
    Kind kind = Kind::respond;
    uint code = 0;
    QVariantMap results = {};
    /// The request object has another path than the one that was asked for.
    bool atOwnPath = false;
  };

  FakePortal() : object_(*this) {
    object_.moveToThread(&thread_);
    thread_.start();
    on([this] {
      connection_.registerVirtualObject(kObject, &object_, QDBusConnection::SubPath);
      connection_.registerService(kService);
    });
  }
  ~FakePortal() {
    on([this] { connection_.unregisterService(kService); });
    thread_.quit();
    thread_.wait();
    QDBusConnection::disconnectFromBus(connection_.name());
  }
  FakePortal(const FakePortal&) = delete;
  FakePortal& operator=(const FakePortal&) = delete;

  /// To every question, or to those of one name.
  void setAnswer(const Answer& answer, const QString& question = {}) {
    const std::scoped_lock lock(mutex_);
    answers_[question] = answer;
  }
  /// The user presses what the portal has given.
  void activate(const QString& session, const QString& shortcut) {
    auto signal = QDBusMessage::createSignal(kObject, QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                                             QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(session)) << shortcut << qulonglong{1} << QVariantMap();
    on([this, signal] { connection_.send(signal); });
  }
  /// The portal ends a session by itself.
  void closeSession(const QString& session) {
    auto signal =
        QDBusMessage::createSignal(session, QStringLiteral("org.freedesktop.portal.Session"), QStringLiteral("Closed"));
    signal << QVariantMap();
    on([this, signal] { connection_.send(signal); });
  }
  /// The user answers the question that `stayQuiet` has left open.
  void respondNow(const Answer& answer) {
    on([this, answer] { respond(open_.first, open_.second, answer); });
  }
  /// What was pressed and released on the keyboard that it lends: "+61" for a keysym, "#+1e" for a position.
  QStringList keys() {
    const std::scoped_lock lock(mutex_);
    return keys_;
  }
  /// Waits until what it has sent so far has reached this process; what comes of it has happened then, too.
  void settle() {
    // The bus keeps the order of what it gets and of what it hands out.
    on([this] { askBus(connection_); });
    askBus(QDBusConnection::sessionBus());
    QCoreApplication::processEvents();
  }
  /// Ends and comes back, and knows nothing of what was before.
  void restart() {
    on([this] {
      connection_.unregisterService(kService);
      connection_.registerService(kService);
    });
  }
  /// Called with each question before it is answered, on the portal's thread.
  std::function<void(const QDBusMessage&)> asked;

  std::atomic<uint> version = 2;
  /// What it needs before it tells which interfaces it has.
  std::atomic<int> hesitationMs = 0;
  std::atomic<int> calls = 0;
  /// Keys that it still takes.
  std::atomic<int> keysLeft = 1'000'000;
  std::atomic<int> neutralKeys = 0;
  /// Questions that were taken back.
  std::atomic<int> closed = 0;

 private:
  static inline const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
  static inline const QString kObject = QStringLiteral("/org/freedesktop/portal/desktop");

  class Object final : public QDBusVirtualObject {
   public:
    explicit Object(FakePortal& portal) : portal_(portal) {}
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
      return portal_.handle(message, connection);
    }

   private:
    FakePortal& portal_;
  };

  static void askBus(const QDBusConnection& bus) {
    const QString name = QStringLiteral("org.freedesktop.DBus");
    bus.call(QDBusMessage::createMethodCall(name, QStringLiteral("/"), name, QStringLiteral("GetId")));
  }
  void on(const std::function<void()>& work) {
    QMetaObject::invokeMethod(&object_, work, Qt::BlockingQueuedConnection);
  }

  bool handle(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.member() == QStringLiteral("Get")) {
      QThread::msleep(static_cast<unsigned long>(hesitationMs.load()));
      const auto reply = message.createReply(QVariant::fromValue(QDBusVariant(version.load())));
      const auto refusal = message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such interface"));
      return connection.send(version > 0 ? reply : refusal);
    }
    if (message.member() == QStringLiteral("Close")) {
      ++closed;
      return connection.send(message.createReply());
    }
    if (message.member().startsWith(QStringLiteral("NotifyKeyboard"))) return takeKey(message, connection);
    ++calls;
    if (asked) asked(message);
    const std::scoped_lock lock(mutex_);
    return play(message, connection);
  }

  bool takeKey(const QDBusMessage& message, const QDBusConnection& connection) {
    if (keysLeft-- <= 0)
      return connection.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no such session")));
    const QVariantList values = message.arguments();
    const QString kind = message.member().endsWith(QStringLiteral("Keysym")) ? QString() : QStringLiteral("#");
    const QChar direction = values[3].toUInt() == 1 ? QLatin1Char('+') : QLatin1Char('-');
    // The kernel's unknown key, which plugs the keyboard in.
    const bool isNeutral = !kind.isEmpty() && values[2].toInt() == 240;
    const std::scoped_lock lock(mutex_);
    if (isNeutral)
      ++neutralKeys;
    else
      keys_.append(kind + direction + QString::number(values[2].toInt(), 16));
    if (asked) asked(message);
    return connection.send(message.createReply());
  }

  bool play(const QDBusMessage& message, QDBusConnection connection) {
    const auto own = answers_.find(message.member());
    const Answer answer = own == answers_.end() ? answers_[{}] : own->second;
    if (answer.kind == Answer::Kind::refuseTheCall)
      return connection.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("not to you")));
    if (answer.kind == Answer::Kind::vanish) return connection.unregisterService(kService);
    const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().constLast());
    const QString token = answer.atOwnPath ? QStringLiteral("own") : options[QStringLiteral("handle_token")].toString();
    const QString sender = message.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString path = QStringLiteral("%1/request/%2/%3").arg(kObject, sender, token);
    connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    open_ = {message.service(), path};
    if (answer.kind == Answer::Kind::stayQuiet) return true;
    return respond(message.service(), path, answer);
  }

  bool respond(const QString& caller, const QString& path, const Answer& answer) const {
    auto signal = QDBusMessage::createTargetedSignal(caller, path, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal << answer.code << answer.results;
    return connection_.send(signal);
  }

  /// Each has a connection of its own.
  static QDBusConnection connect() {
    static int count = 0;
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("fake portal %1").arg(++count));
  }

  QDBusConnection connection_ = connect();
  Object object_;
  QThread thread_;
  std::mutex mutex_;
  std::map<QString, Answer> answers_;
  QStringList keys_;
  /// Who has asked last, and where the answer goes.
  std::pair<QString, QString> open_;
};
