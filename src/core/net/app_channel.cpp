#include "core/net/app_channel.h"

#include <QDir>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QLockFile>
#include <QPointer>
#include <QStandardPaths>
#include <QTimer>

#include "base/folder.h"
#include "base/logging.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Far above any request there is; a longer line is not one of ours.
constexpr qint64 kMaximumLine = 64 * 1024;
/// For the request of whoever has connected.
constexpr auto kRequestPatience = 2s;

QByteArray line(const QJsonObject& object) { return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n'; }

QString runtimeFolder() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  return folder.isEmpty() ? QDir::homePath() + u"/.cache/Vantle"_s : folder;
}

}  // namespace

QString app_channel::socketPath() { return runtimeFolder() + u"/vantle.sock"_s; }

AppServer::AppServer(Handler handler) : handler_(std::move(handler)) {}

AppServer::~AppServer() = default;

bool AppServer::listen() {
  const QString path = app_channel::socketPath();
  makePrivateFolder(runtimeFolder());
  place_ = std::make_unique<QLockFile>(path + u".lock"_s);
  // Held until the holder dies, however long that takes: only a dead holder's lock is stale.
  place_->setStaleLockTime(0);
  if (!place_->tryLock()) return false;
  QLocalServer::removeServer(path);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, &AppServer::accept);
  if (!server_.listen(path)) qCWarning(lcPlatform).noquote() << "No socket for commands:" << server_.errorString();
  return true;
}

void AppServer::accept() {
  QLocalSocket* socket = server_.nextPendingConnection();
  if (!socket) return;
  socket->setReadBufferSize(kMaximumLine);
  connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
  auto* patience = new QTimer(socket);
  patience->setSingleShot(true);
  connect(patience, &QTimer::timeout, socket, &QLocalSocket::abort);
  patience->start(kRequestPatience);
  connect(socket, &QLocalSocket::readyRead, this, [this, socket, patience] {
    if (!patience->isActive() || !socket->canReadLine()) return;
    patience->stop();
    take(*socket);
  });
}

void AppServer::take(QLocalSocket& socket) {
  const QJsonObject request = QJsonDocument::fromJson(socket.readLine(kMaximumLine)).object();
  handler_(request, [other = QPointer(&socket)](const QJsonObject& answer) {
    if (!other) return;
    other->write(line(answer));
    other->disconnectFromServer();
  });
}

QString AppClient::Error::description() const {
  return kind == Kind::notRunning ? u"Vantle is not running"_s : u"Vantle is running but does not answer"_s;
}

std::expected<QJsonObject, AppClient::Error> AppClient::request(const QJsonObject& request,
                                                                std::chrono::milliseconds patience) {
  QLocalSocket socket;
  socket.connectToServer(app_channel::socketPath());
  if (!socket.waitForConnected(static_cast<int>(kPatience.count())))
    return std::unexpected(Error{Error::Kind::notRunning});
  socket.write(line(request));
  while (!socket.canReadLine())
    if (!socket.waitForReadyRead(static_cast<int>(patience.count())))
      return std::unexpected(Error{Error::Kind::noAnswer});
  return QJsonDocument::fromJson(socket.readLine(kMaximumLine)).object();
}
