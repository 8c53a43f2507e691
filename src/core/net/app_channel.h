#pragma once

#include <QJsonObject>
#include <QLocalServer>
#include <QObject>

#include <chrono>
#include <expected>
#include <functional>
#include <memory>

class QLocalSocket;
class QLockFile;

/// The socket by which the command line talks to the running application; only the user can open it.
/// One request a connection: a line of JSON, answered by a line of JSON.
namespace app_channel {

/// Below the user's private runtime folder.
QString socketPath();

}  // namespace app_channel

/// The running application's end. Main thread only.
class AppServer : public QObject {
  Q_OBJECT

 public:
  /// Gives the answer, at once or later; nothing happens when the other end has gone meanwhile.
  using Reply = std::function<void(const QJsonObject& answer)>;
  using Handler = std::function<void(const QJsonObject& request, const Reply& reply)>;

  explicit AppServer(Handler handler);
  ~AppServer() override;

  /// Takes the one place there is for a running application; false when another one has it.
  bool listen();

 private:
  void accept();
  void take(QLocalSocket& socket);

  std::unique_ptr<QLockFile> place_;
  QLocalServer server_;
  Handler handler_;
};

/// The command line's end; blocks until the answer is there.
class AppClient {
 public:
  struct Error {
    enum class Kind { notRunning, noAnswer };
    Kind kind = Kind::notRunning;
    QString description() const;
  };

  static constexpr std::chrono::milliseconds kPatience{2000};

  /// Sends one request to the running application and waits for its answer, no longer than `patience`.
  static std::expected<QJsonObject, Error> request(const QJsonObject& request,
                                                   std::chrono::milliseconds patience = kPatience);
};
