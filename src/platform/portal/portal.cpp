#include "platform/portal/portal.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QTimer>

#include <algorithm>

#include "platform/portal/portal_names.h"
#include "platform/portal/portal_request.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A portal that runs answers within a few milliseconds, one that has to be started within some hundred.
constexpr auto kVersionPatience = 500ms;
/// While the desktop starts, that may not be enough; nobody waits for the second answer.
constexpr auto kLatePatience = 30s;
/// A portal that crashes as it starts may do so each time.
constexpr std::chrono::milliseconds kShortLife = 1min;
constexpr std::chrono::milliseconds kMostBeforeReviving = 10min;

bool isYes(const QDBusMessage& answer) {
  const QVariant version = answer.arguments().value(0).value<QDBusVariant>().variant();
  return answer.type() == QDBusMessage::ReplyMessage && version.toUInt() > 0;
}

}  // namespace

Portal::Portal(QDBusConnection bus, std::chrono::milliseconds beforeReviving)
    : bus_(std::move(bus)),
      watcher_(portal_names::kService, bus_, QDBusServiceWatcher::WatchForOwnerChange),
      beforeReviving_(beforeReviving) {
  connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, &Portal::followOwner);
}

std::optional<bool> Portal::offer(const QString& interface) {
  if (!bus_.isConnected()) return false;
  if (!answers_.contains(interface)) ask(interface, kVersionPatience);
  return answers_[interface].isOffered;
}

bool Portal::offers(const QString& interface) {
  if (const auto known = offer(interface)) return *known;
  QDBusPendingCall question = *answers_[interface].question;
  question.waitForFinished();
  return isYes(question.reply());
}

void Portal::ask(const QString& interface, std::chrono::milliseconds patience) {
  auto question = QDBusMessage::createMethodCall(portal_names::kService, portal_names::kObject,
                                                 u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
  question << QString(portal_names::kPrefix + interface) << u"version"_s;
  const QDBusPendingCall asked = bus_.asyncCall(question, static_cast<int>(patience.count()));
  answers_[interface].question = asked;
  auto* answer = new QDBusPendingCallWatcher(asked, questions_.scope());
  questions_.on(answer, &QDBusPendingCallWatcher::finished,
                [this, interface, patience](const QDBusPendingCallWatcher* finished) {
                  const bool isLate = finished->error().type() == QDBusError::NoReply && patience < kLatePatience;
                  take(interface, finished->reply());
                  if (isLate) ask(interface, kLatePatience);
                });
}

void Portal::take(const QString& interface, const QDBusMessage& answer) {
  const bool isOffered = isYes(answer);
  answers_[interface] = {isOffered, std::nullopt};
  Q_EMIT told(interface, isOffered);
}

void Portal::followOwner(const QString&, const QString& before, const QString& after) {
  if (!before.isEmpty()) endAll();
  if (after.isEmpty()) return reviveLater();
  shortLife_.setRemainingTime(kShortLife);
  askAgain();
}

void Portal::reviveLater() {
  revivalWait_ = shortLife_.hasExpired() ? beforeReviving_ : std::min(revivalWait_ * 2, kMostBeforeReviving);
  revival_ = Job::start();
  QTimer::singleShot(revivalWait_, revival_.scope(), revival_.bind([this] { askAgain(); }));
}

void Portal::endAll() {
  questions_ = Job::start();
  for (auto& [interface, answer] : answers_) answer = {false, std::nullopt};
  for (const QString& interface : interfaces()) Q_EMIT told(interface, false);
}

/// What has not been answered yet, the new one will.
void Portal::askAgain() {
  revival_.cancel();
  for (const QString& interface : interfaces()) {
    Answer& answer = answers_[interface];
    // Asked a moment ago; a late question, beside which an answer stands already, is too long to be waited for.
    if (answer.question && !answer.isOffered) continue;
    answer.isOffered.reset();
    ask(interface, kVersionPatience);
  }
}

/// A copy: whoever is told may ask for another one.
QStringList Portal::interfaces() const {
  QStringList names;
  for (const auto& [interface, answer] : answers_) names.append(interface);
  return names;
}

void Portal::request(PortalCall call, const JobRef& job, Done done) {
  if (!job.isRunning()) return;
  // Ends with the job, or by itself.
  auto* request = new PortalRequest(bus_, std::move(call), job.bind(std::move(done)), job.scope());
  request->start();
}
