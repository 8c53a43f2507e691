#pragma once

#include <QAbstractNativeEventFilter>

#include "platform/tray_panel.h"
#include "platform/x11/x11_session.h"

/// The panel's colour is read off the screen, for no protocol tells it; a new tray announces itself to everybody.
class X11TrayPanel final : public TrayPanel, public QAbstractNativeEventFilter {
 public:
  explicit X11TrayPanel(const X11Session& session);

  std::optional<bool> isDark(const QRect& icon) const override;
  void watch(std::function<void()> appeared) override { appeared_ = std::move(appeared); }

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  xcb_atom_t manager_;
  xcb_atom_t traySelection_;
  std::function<void()> appeared_;
};
