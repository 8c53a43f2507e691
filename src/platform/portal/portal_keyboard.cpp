#include "platform/portal/portal_keyboard.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QTimer>

#include <utility>

#include "base/atomic_file.h"
#include "base/logging.h"
#include "base/regular_file.h"
#include "platform/portal/portal_names.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kInterface = u"RemoteDesktop"_s;
constexpr uint kKeyboard = 1;
/// Until the user takes it back.
constexpr uint kPersistent = 2;
/// The user is asked, and may be away.
constexpr auto kPatience = 10min;
constexpr auto kKeyPatience = 5s;
constexpr auto kRest = 30s;
constexpr qint64 kLongestPermission = 4096;

/// Empty when there is none. It is good for one time.
QString readPermission(const QString& path) {
  const auto file = openRegularFile(path);
  return file ? QString::fromUtf8((*file)->read(kLongestPermission)).trimmed() : QString();
}

bool keepPermission(const QString& path, const QString& permission) {
  if (permission.isEmpty()) {
    QFile::remove(path);
    return false;
  }
  const auto written = writeFileAtomically(path, permission.toUtf8());
  if (!written) qCWarning(lcPlatform).noquote() << "Permission to type not kept:" << written.error().description();
  return written.has_value();
}

}  // namespace

PortalKeyboard::PortalKeyboard(QDBusConnection bus, const std::shared_ptr<Portal>& portal, QString permission)
    : bus_(std::move(bus)), session_(bus_, portal, kInterface), permission_(std::move(permission)) {
  connect(&session_, &PortalSession::closed, this, &PortalKeyboard::sessionEnded);
  connect(portal.get(), &Portal::told, this, [this](const QString& interface, bool isOffered) {
    if (interface != kInterface || isOffered) return;
    session_.forget();
    sessionEnded();
  });
}

void PortalKeyboard::open(const JobRef& job, Opened opened) {
  resting_.cancel();
  if (isOpen_) return job.later([opened = std::move(opened)] { opened({}); });
  if (no_) return job.later([opened = std::move(opened), no = *no_] { opened(std::unexpected(no)); });
  waiting_.push_back(job.bind(std::move(opened)));
  if (opening_.isRunning()) return;
  opening_ = Job::start();
  session_.open(opening_, [this](const auto& session) {
    if (session) return selectKeyboard();
    fail(session.error());
  });
}

void PortalKeyboard::selectKeyboard() {
  QVariantMap options{{u"types"_s, kKeyboard}, {u"persist_mode"_s, kPersistent}};
  const QString permission = readPermission(permission_);
  if (!permission.isEmpty()) options.insert(u"restore_token"_s, permission);
  request({kInterface, u"SelectDevices"_s, {}, options}, [this](const auto&) { start(); });
}

void PortalKeyboard::start() {
  request({kInterface, u"Start"_s, {QString()}, {}, kPatience}, [this](const auto& given) { take(given); });
}

void PortalKeyboard::take(const QVariantMap& given) {
  isPermissionKept_ = keepPermission(permission_, given.value(u"restore_token"_s).toString());
  if ((given.value(u"devices"_s).toUInt() & kKeyboard) == 0)
    return fail({PortalError::Kind::refused, u"The desktop lends no keyboard"_s});
  isOpen_ = true;
  finish({});
}

void PortalKeyboard::fail(const PortalError& error) {
  qCInfo(lcPlatform).noquote() << "No keyboard of the desktop:" << error.reason;
  if (error.kind == PortalError::Kind::refused) {
    no_ = error;
    keepPermission(permission_, {});
  }
  close();
  finish(std::unexpected(error));
}

void PortalKeyboard::finish(const std::expected<void, PortalError>& result) {
  opening_.cancel();
  for (const Opened& opened : std::exchange(waiting_, {})) opened(result);
}

/// A step of the opening, which ends with the first that fails.
void PortalKeyboard::request(PortalCall call, std::function<void(const QVariantMap&)> done) {
  session_.request(std::move(call), opening_, [this, done = std::move(done)](const auto& answer) {
    if (answer) return done(*answer);
    fail(answer.error());
  });
}

void PortalKeyboard::press(const std::vector<PortalKey>& keys, const JobRef& job, Pressed pressed) {
  pressFrom(0, std::make_shared<const Batch>(keys, job, job.bind(std::move(pressed))));
}

/// One by one: portals hand each call to another thread, which brings those that are under way out of order.
void PortalKeyboard::pressFrom(std::size_t index, const std::shared_ptr<const Batch>& batch) {
  if (!isOpen_ || index == batch->keys.size())
    return batch->job.later([batch, index] { Pressed(batch->pressed)(index); });
  const PortalKey& key = batch->keys[index];
  auto call = QDBusMessage::createMethodCall(
      portal_names::kService, portal_names::kObject, portal_names::kPrefix + kInterface,
      key.by == PortalKey::By::keysym ? u"NotifyKeyboardKeysym"_s : u"NotifyKeyboardKeycode"_s);
  call << session_.handle() << QVariantMap() << static_cast<int>(key.code) << uint{key.isPressed};
  auto* answer = new QDBusPendingCallWatcher(
      bus_.asyncCall(call, static_cast<int>(std::chrono::milliseconds(kKeyPatience).count())), batch->job.scope());
  const auto answered = [this, index, batch](QDBusPendingCallWatcher* finished) {
    finished->deleteLater();
    if (!finished->isError()) return pressFrom(index + 1, batch);
    qCInfo(lcPlatform).noquote() << "A key was not taken:" << finished->error().message();
    Pressed(batch->pressed)(index);
  };
  connect(answer, &QDBusPendingCallWatcher::finished, batch->job.scope(), batch->job.bind(answered));
}

void PortalKeyboard::rest() {
  if (!isOpen_ || !isPermissionKept_) return;
  resting_ = Job::start();
  QTimer::singleShot(kRest, resting_.scope(), resting_.bind([this] { close(); }));
}

void PortalKeyboard::close() {
  forget();
  session_.close();
}

void PortalKeyboard::forget() {
  isOpen_ = false;
  resting_.cancel();
}

/// By the desktop, or with the portal.
void PortalKeyboard::sessionEnded() {
  forget();
  if (opening_.isRunning()) finish(std::unexpected(PortalError{PortalError::Kind::failed, u"It was closed"_s}));
}
