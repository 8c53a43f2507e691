#include "platform/x11/x11_tray_panel.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

X11TrayPanel::X11TrayPanel(const X11Session& session)
    : manager_(internAtom(session, "MANAGER")), traySelection_(internAtom(session, "_NET_SYSTEM_TRAY_S0")) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

// At its corner the icon is transparent: what is seen there is the panel.
std::optional<bool> X11TrayPanel::isDark(const QRect& icon) const {
  QScreen* screen = icon.isEmpty() ? nullptr : QGuiApplication::screenAt(icon.center());
  if (!screen) return std::nullopt;
  const QPoint corner = icon.topLeft() - screen->geometry().topLeft();
  const QImage pixel = screen->grabWindow(0, corner.x(), corner.y(), 1, 1).toImage();
  if (pixel.isNull()) return std::nullopt;
  constexpr int kMiddleGray = 128;
  return qGray(pixel.pixel(0, 0)) < kMiddleGray;
}

bool X11TrayPanel::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto& event = *static_cast<const xcb_generic_event_t*>(message);
  constexpr int kSent = 0x80;
  if ((event.response_type & ~kSent) != XCB_CLIENT_MESSAGE || !appeared_) return false;
  const auto& news = reinterpret_cast<const xcb_client_message_event_t&>(event);
  if (news.type == manager_ && news.data.data32[1] == traySelection_) appeared_();
  return false;
}
