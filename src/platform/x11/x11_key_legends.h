#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <optional>

#include "platform/key_legends.h"
#include "platform/x11/x11_key_map.h"
#include "platform/x11/x11_session.h"

/// The labels of the server's keyboard map, which is read when somebody first asks. Main thread only.
class X11KeyLegends final : public KeyLegends, public QAbstractNativeEventFilter {
 public:
  explicit X11KeyLegends(const X11Session& session) : session_(session) {}

  QString legend(std::uint32_t position) const override;
  std::uint32_t position(std::uint32_t keyCode) const override;
  void watch(std::function<void()> changed) override;

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  const X11KeyMap& keyMap() const;

  X11Session session_;
  QObject context_;
  mutable std::optional<X11KeyMap> keyMap_;
  std::function<void()> changed_;
};
