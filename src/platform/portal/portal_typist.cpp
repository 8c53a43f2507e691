#include "platform/portal/portal_typist.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kInterface = u"RemoteDesktop"_s;
const QString kNoMoreKeys = u"The desktop takes no more keys"_s;
/// What the desktop needs where the user has allowed it before; what takes longer is a question to him.
constexpr auto kUntilAsked = 1s;
/// Nobody tells which keys are held for a program that is not ours: hands that have just pressed a shortcut leave the
/// keyboard within that time.
constexpr auto kUntilHandsAreOff = 400ms;
constexpr int kLockPatienceMs = 300;
/// The kernel's unknown key, which writes nothing anywhere.
constexpr std::uint32_t kNeutralKey = 240;

KeyEventError incomplete(const QString& reason, const QString& rest = {}) {
  return {reason, KeyEventError::Kind::incomplete, rest};
}

QString reasonOf(const PortalError& error) {
  if (error.kind == PortalError::Kind::refused)
    return u"The desktop was told that Vantle must not type; start Vantle anew to be asked again"_s;
  return u"The desktop lends no keyboard (%1)"_s.arg(error.reason);
}

}  // namespace

PortalTypist::PortalTypist(const QDBusConnection& bus, std::shared_ptr<Portal> portal, QString permission,
                           Sources sources)
    : bus_(bus),
      portal_(std::move(portal)),
      keyboard_(bus, portal_, std::move(permission)),
      sources_(std::move(sources)) {}

void PortalTypist::type(const KeySequence& sequence, std::stop_token stop, Done done) {
  sequence_ = sequence;
  stop_ = std::move(stop);
  done_ = std::move(done);
  run_ = Job::start();
  JobRef(run_).later([this] { begin(); });
}

void PortalTypist::begin() {
  if (stop_.stop_requested()) return finish(std::unexpected(incomplete(u"Typing was stopped"_s)));
  const auto isOffered = portal_->offer(kInterface);
  if (!isOffered) return waitForPortal();
  if (!*isOffered) return refuse(u"Under Wayland keys reach only programs that run through XWayland"_s);
  auto steps = portalSteps(sequence_, sources_.layout());
  if (!steps) return finish(std::unexpected(steps.error()));
  steps_ = *std::move(steps);
  at_ = 0;
  open();
}

void PortalTypist::waitForPortal() {
  patience_ = Job::start();
  patience_.on(portal_.get(), &Portal::told, [this](const QString&, bool) {
    patience_.cancel();
    begin();
  });
}

void PortalTypist::open() {
  patience_ = Job::start();
  QTimer::singleShot(kUntilAsked, patience_.scope(), patience_.bind([this] {
    refuse(u"The desktop asks whether Vantle may type: allow it, then try again"_s);
  }));
  keyboard_.open(patience_, [this](const auto& opened) {
    patience_.cancel();
    if (!opened) return refuse(reasonOf(opened.error()));
    lookForLock();
  });
}

/// A locked screen would take it for the password.
void PortalTypist::lookForLock() {
  auto question = QDBusMessage::createMethodCall(u"org.freedesktop.ScreenSaver"_s, u"/org/freedesktop/ScreenSaver"_s,
                                                 u"org.freedesktop.ScreenSaver"_s, u"GetActive"_s);
  question.setAutoStartService(false);
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, kLockPatienceMs), run_.scope());
  run_.on(answer, &QDBusPendingCallWatcher::finished, [this](const QDBusPendingCallWatcher* finished) {
    const bool isLocked = !finished->isError() && finished->reply().arguments().value(0).toBool();
    if (isLocked) return refuse(u"The screen is locked"_s);
    plugIn();
  });
}

/// A computer without a keyboard has one from the first key on, which programs hear of too late for that key.
void PortalTypist::plugIn() {
  constexpr auto kBy = PortalKey::By::evdevCode;
  keyboard_.press({{kBy, kNeutralKey, true}, {kBy, kNeutralKey, false}}, run_, [this](std::size_t taken) {
    if (taken < 2) return refuse(kNoMoreKeys);
    waitForHands();
  });
}

void PortalTypist::waitForHands() {
  QTimer::singleShot(kUntilHandsAreOff, run_.scope(), run_.bind([this] {
    if (sources_.isOurs()) return refuse(u"A window of Vantle’s has the keyboard"_s);
    next();
  }));
}

void PortalTypist::next() {
  if (stop_.stop_requested()) return finish(std::unexpected(incomplete(u"Typing was stopped"_s)));
  if (at_ == steps_.size()) return finish({});
  const PortalStep& step = steps_[at_];
  if (!step.keys.empty()) return keyboard_.press(step.keys, run_, [this](std::size_t taken) { pressed(taken); });
  ++at_;
  QTimer::singleShot(step.pause, Qt::PreciseTimer, run_.scope(), run_.bind([this] { next(); }));
}

void PortalTypist::pressed(std::size_t taken) {
  const PortalStep& step = steps_[at_];
  if (taken == step.keys.size()) {
    ++at_;
    return next();
  }
  // A character is a press and a release; one that was pressed only is there.
  const std::size_t written = step.text.empty() ? 0 : (taken + 1) / 2;
  if (taken == 0 && at_ == 0) return refuse(kNoMoreKeys);
  finish(std::unexpected(incomplete(kNoMoreKeys, textFrom(steps_, at_, written))));
}

void PortalTypist::refuse(const QString& reason) {
  finish(std::unexpected(KeyEventError{reason, KeyEventError::Kind::refused}));
}

void PortalTypist::finish(const std::expected<void, KeyEventError>& result) {
  patience_.cancel();
  run_.cancel();
  keyboard_.rest();
  if (const Done done = std::exchange(done_, nullptr)) done(result);
}
