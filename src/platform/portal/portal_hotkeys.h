#pragma once

#include <QDBusObjectPath>
#include <QObject>

#include <map>
#include <memory>
#include <set>

#include "platform/hotkey_backend.h"
#include "platform/portal/portal_session.h"
#include "platform/portal/portal_shortcut.h"

/// Combinations that the desktop's portal hands out. It may give another one than was wished for, and ask the user
/// about all of them; he says so at his leisure, so that a registration always succeeds once the portal is known to
/// hand some out, which may come after the first ones: `watchTriggers` tells that those which failed may be tried
/// again. A portal that is started anew, or that closes our session, is asked anew. `inner` gets every registration
/// too, for programs that the portal has no say over and for desktops whose portal has no shortcuts. Main thread only.
class PortalHotkeys final : public QObject, public HotkeyBackend {
  Q_OBJECT

 public:
  PortalHotkeys(QDBusConnection bus, std::shared_ptr<Portal> portal, std::unique_ptr<HotkeyBackend> inner);

  void install(Pressed pressed) override;
  std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                    std::uint32_t carbonModifiers) override;
  void unregisterHotkey(std::uint32_t id) override;
  void describeBy(const Describe& describe) override { describe_ = describe; }
  void watchTriggers(const std::function<void()>& changed) override { changed_ = changed; }
  QString systemTrigger(std::uint32_t keyCode, std::uint32_t carbonModifiers) const override;

  /// Whether the portal has taken the combinations, so that they reach every program.
  bool areBound() const { return !bound_.empty(); }

 private Q_SLOTS:
  void activated(const QDBusObjectPath& session, const QString& shortcut, qulonglong time, const QVariantMap& options);

 private:
  struct Wanted {
    QString shortcut;
    QString trigger;
    QString name;
  };

  Wanted describe(std::uint32_t keyCode, std::uint32_t carbonModifiers) const;
  bool isAllBound() const;
  void bindSoon();
  void bind();
  void openSession();
  void bindWishes();
  void listen();
  void keep(const std::expected<QVariantMap, PortalError>& answer, const std::map<QString, Wanted>& asked);
  void forget();
  void sessionClosed();
  void follow(const QString& interface, bool isOffered);

  QDBusConnection bus_;
  std::shared_ptr<Portal> portal_;
  std::unique_ptr<HotkeyBackend> inner_;
  Pressed pressed_;
  Describe describe_;
  std::function<void()> changed_;
  std::map<std::uint32_t, Wanted> wanted_;
  /// What the portal has given, by the shortcut's name: what was wished for, and how it calls what it gave.
  std::map<QString, QString> bound_;
  std::map<QString, QString> triggers_;
  PortalSession session_;
  bool isListening_ = false;
  /// A portal that goes on closing what it has opened is left alone.
  int reopenings_ = 0;
  /// Gathers registrations; then the questions.
  Job run_;
};
