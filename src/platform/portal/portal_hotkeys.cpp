#include "platform/portal/portal_hotkeys.h"

#include <QDBusMetaType>
#include <QTimer>

#include <algorithm>

#include "base/logging.h"
#include "platform/carbon_modifiers.h"
#include "platform/key_codes.h"
#include "platform/keysym_name.h"
#include "platform/portal/portal_names.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kInterface = u"GlobalShortcuts"_s;
/// Registrations come one by one, a start's all at once.
constexpr auto kGathering = 200ms;
/// The user is asked about all of them, and may read first.
constexpr auto kPatience = 10min;
/// Of sessions that one portal closes.
constexpr int kMostReopenings = 3;

/// As desktops write combinations to one another: "CTRL+ALT+u".
QString triggerOf(std::uint32_t keyCode, std::uint32_t carbonModifiers) {
  const KeyCode* key = findKeyCode(keyCode);
  if (!key) return {};
  QString trigger;
  if (carbonModifiers & carbon::kControl) trigger += u"CTRL+"_s;
  if (carbonModifiers & carbon::kOption) trigger += u"ALT+"_s;
  if (carbonModifiers & carbon::kShift) trigger += u"SHIFT+"_s;
  if (carbonModifiers & carbon::kCommand) trigger += u"LOGO+"_s;
  return trigger + keysymName(*key);
}

}  // namespace

PortalHotkeys::PortalHotkeys(QDBusConnection bus, std::shared_ptr<Portal> portal, std::unique_ptr<HotkeyBackend> inner)
    : bus_(std::move(bus)), portal_(std::move(portal)), inner_(std::move(inner)), session_(bus_, portal_, kInterface) {
  // By its name too, which is how a slot's arguments are looked up.
  qRegisterMetaType<QDBusObjectPath>();
  qDBusRegisterMetaType<PortalShortcut>();
  qDBusRegisterMetaType<PortalShortcuts>();
  connect(portal_.get(), &Portal::told, this, &PortalHotkeys::follow);
  connect(&session_, &PortalSession::closed, this, &PortalHotkeys::sessionClosed);
}

void PortalHotkeys::install(Pressed pressed) {
  pressed_ = pressed;
  inner_->install(std::move(pressed));
}

std::expected<void, HotkeyRefusal> PortalHotkeys::registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                                 std::uint32_t carbonModifiers) {
  const auto taken = inner_->registerHotkey(id, keyCode, carbonModifiers);
  const bool isOffered = portal_->offer(kInterface).value_or(false);
  if (!taken && !isOffered) return taken;
  wanted_[id] = describe(keyCode, carbonModifiers);
  if (isOffered && !isAllBound()) bindSoon();
  return {};
}

/// The portal keeps it: asking anew would ask the user anew, and a press of it finds nobody.
void PortalHotkeys::unregisterHotkey(std::uint32_t id) {
  inner_->unregisterHotkey(id);
  wanted_.erase(id);
}

QString PortalHotkeys::systemTrigger(std::uint32_t keyCode, std::uint32_t carbonModifiers) const {
  const auto found = triggers_.find(describe(keyCode, carbonModifiers).shortcut);
  return found == triggers_.end() ? QString() : found->second;
}

PortalHotkeys::Wanted PortalHotkeys::describe(std::uint32_t keyCode, std::uint32_t carbonModifiers) const {
  const QString trigger = triggerOf(keyCode, carbonModifiers);
  const HotkeyPurpose purpose = describe_ ? describe_(keyCode, carbonModifiers) : HotkeyPurpose{};
  if (purpose.id.isEmpty()) return {trigger, trigger, trigger};
  return {purpose.id, trigger, purpose.name};
}

bool PortalHotkeys::isAllBound() const {
  return std::ranges::all_of(wanted_, [this](const auto& entry) {
    const auto found = bound_.find(entry.second.shortcut);
    return found != bound_.end() && found->second == entry.second.trigger;
  });
}

void PortalHotkeys::bindSoon() {
  run_ = Job::start();
  QTimer::singleShot(kGathering, run_.scope(), run_.bind([this] { bind(); }));
}

/// A session takes combinations once.
void PortalHotkeys::bind() {
  session_.close();
  forget();
  if (!wanted_.empty() && !isAllBound()) openSession();
}

void PortalHotkeys::openSession() {
  listen();
  session_.open(run_, [this](const auto& session) {
    if (session) return bindWishes();
    qCInfo(lcPlatform).noquote() << "No shortcuts of the desktop:" << session.error().reason;
  });
}

void PortalHotkeys::listen() {
  isListening_ = isListening_ ||
                 bus_.connect(portal_names::kService, portal_names::kObject, portal_names::kPrefix + kInterface,
                              u"Activated"_s, this, SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
}

void PortalHotkeys::bindWishes() {
  std::map<QString, Wanted> asked;
  for (const auto& [id, wanted] : wanted_) asked.emplace(wanted.shortcut, wanted);
  PortalShortcuts shortcuts;
  for (const auto& [name, wanted] : asked)
    shortcuts.append({name, {{u"description"_s, wanted.name}, {u"preferred_trigger"_s, wanted.trigger}}});
  PortalCall call{kInterface, u"BindShortcuts"_s, {QVariant::fromValue(shortcuts), QString()}, {}, kPatience};
  session_.request(std::move(call), run_, [this, asked](const auto& answer) { keep(answer, asked); });
}

void PortalHotkeys::keep(const std::expected<QVariantMap, PortalError>& answer,
                         const std::map<QString, Wanted>& asked) {
  if (!answer) {
    qCInfo(lcPlatform).noquote() << "No shortcuts of the desktop:" << answer.error().reason;
    return session_.close();
  }
  for (const PortalShortcut& given : qdbus_cast<PortalShortcuts>(answer->value(u"shortcuts"_s))) {
    const auto wish = asked.find(given.id);
    if (wish == asked.end()) continue;
    bound_[given.id] = wish->second.trigger;
    triggers_[given.id] = given.properties.value(u"trigger_description"_s).toString();
  }
  if (changed_) changed_();
}

void PortalHotkeys::forget() {
  bound_.clear();
  triggers_.clear();
}

void PortalHotkeys::sessionClosed() {
  qCInfo(lcPlatform) << "The desktop has closed the session of the shortcuts";
  forget();
  if (reopenings_++ < kMostReopenings) bindSoon();
  if (changed_) changed_();
}

/// Another portal knows nothing of the old one's session.
void PortalHotkeys::follow(const QString& interface, bool isOffered) {
  if (interface != kInterface) return;
  const bool hadSession = session_.isOpen();
  run_.cancel();
  session_.forget();
  forget();
  reopenings_ = 0;
  if (isOffered && !wanted_.empty()) bindSoon();
  if ((hadSession || isOffered) && changed_) changed_();
}

void PortalHotkeys::activated(const QDBusObjectPath& session, const QString& shortcut, qulonglong, const QVariantMap&) {
  if (session.path() != session_.path() || !pressed_) return;
  const auto found = std::ranges::find(wanted_, shortcut, [](const auto& entry) { return entry.second.shortcut; });
  if (found != wanted_.end()) pressed_(found->first);
}
