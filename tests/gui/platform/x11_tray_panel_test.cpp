#include <QGuiApplication>
#include <QTest>

#include "platform/platform.h"
#include "support/x_client.h"

namespace {

xcb_atom_t atom(xcb_connection_t* connection, QByteArrayView name) {
  const auto cookie = xcb_intern_atom(connection, false, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
  return reply->atom;
}

/// Announces itself as whoever takes a selection that others wait for.
void announce(const XClient& client, QByteArrayView selection) {
  xcb_client_message_event_t news{};
  news.response_type = XCB_CLIENT_MESSAGE;
  news.format = 32;
  news.window = client.root();
  news.type = atom(client.connection(), "MANAGER");
  news.data.data32[1] = atom(client.connection(), selection);
  xcb_send_event(client.connection(), false, client.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&news));
  xcb_flush(client.connection());
}

}  // namespace

class X11TrayPanelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void tellsOfTraysThatComeUp() {
    int trays = 0;
    platform_.trayPanel->watch([&trays] { ++trays; });
    announce(panel_, "_NET_SYSTEM_TRAY_S0");
    QTRY_COMPARE(trays, 1);
    announce(panel_, "RESOURCE_MANAGER");
    announce(panel_, "_NET_SYSTEM_TRAY_S0");
    QTRY_COMPARE(trays, 2);
  }

  void seesWhatStandsBehindTheIcon() {
    // Below the title bar that the window manager adds.
    panel_.openWindow(100, 100, 200, 100);
    const QRect icon(150, 150, 24, 24);
    QTRY_COMPARE(platform_.trayPanel->isDark(icon), false);
    const std::uint32_t black = 0;
    xcb_change_window_attributes(panel_.connection(), panel_.window(), XCB_CW_BACK_PIXEL, &black);
    xcb_clear_area(panel_.connection(), false, panel_.window(), 0, 0, 0, 0);
    xcb_flush(panel_.connection());
    QTRY_COMPARE(platform_.trayPanel->isDark(icon), true);
    QVERIFY(!platform_.trayPanel->isDark({}));
    QVERIFY(!platform_.trayPanel->isDark({-500, 0, 24, 24}));
  }

 private:
  XClient panel_;
  Platform platform_ = makePlatform();
};

QTEST_MAIN(X11TrayPanelTest)
#include "x11_tray_panel_test.moc"
