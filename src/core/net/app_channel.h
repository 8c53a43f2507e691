#pragma once

#include <QJsonObject>
#include <QLocalServer>
#include <QObject>

#include <expected>
#include <functional>
#include <memory>

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
  using Handler = std::function<QJsonObject(const QJsonObject& request)>;

  explicit AppServer(Handler handler);
  ~AppServer() override;

  /// Takes the one place there is for a running application; false when another one has it.
  bool listen();

 private:
  void accept();

  std::unique_ptr<QLockFile> place_;
  QLocalServer server_;
  Handler handler_;
};

/// The command line's end; blocks for at most two seconds.
class AppClient {
 public:
  struct Error {
    enum class Kind { notRunning, noAnswer };
    Kind kind = Kind::notRunning;
    QString description() const;
  };

  /// Sends one request to the running application and waits for its answer.
  static std::expected<QJsonObject, Error> request(const QJsonObject& request);
};
