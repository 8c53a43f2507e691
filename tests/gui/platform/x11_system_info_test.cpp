#include "platform/x11/x11_system_info.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QTest>

#include "platform/platform.h"
#include "platform/x11/xsettings.h"
#include "support/x_client.h"

namespace {

void writePadded(QDataStream& out, QByteArray bytes) {
  while (bytes.size() % 4 != 0) bytes.append('\0');
  out.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
}

void writeHead(QDataStream& out, quint8 type, const QByteArray& name) {
  out << type << quint8{0} << quint16(name.size());
  writePadded(out, name);
  out << quint32{7};
}

/// A string, a colour and the switch for animations, as settings managers publish them.
QByteArray settings(QDataStream::ByteOrder order, qint32 animations) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setByteOrder(order);
  out << quint8(order == QDataStream::BigEndian ? 1 : 0) << quint8{0} << quint16{0} << quint32{1} << quint32{3};
  writeHead(out, 1, "Net/ThemeName");
  out << quint32{7};
  writePadded(out, "Adwaita");
  writeHead(out, 2, "Gtk/Colour");
  out << quint64{0};
  writeHead(out, 0, "Gtk/EnableAnimations");
  out << animations;
  return bytes;
}

}  // namespace

class X11SystemInfoTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void settingsOfBothByteOrders() {
    for (const auto order : {QDataStream::LittleEndian, QDataStream::BigEndian}) {
      QCOMPARE(integerSetting(settings(order, 0), "Gtk/EnableAnimations"), std::optional(0));
      QCOMPARE(integerSetting(settings(order, 1), "Gtk/EnableAnimations"), std::optional(1));
      QVERIFY(!integerSetting(settings(order, 0), "Gtk/Other"));
      QVERIFY(!integerSetting(settings(order, 0), "Net/ThemeName"));
    }
  }

  void damagedSettings() {
    const auto whole = settings(QDataStream::LittleEndian, 0);
    for (qsizetype size = 0; size < whole.size(); ++size)
      QVERIFY(!integerSetting(whole.first(size), "Gtk/EnableAnimations"));
    QByteArray huge = whole;
    huge.replace(14, 2, "\xff\xff");
    QVERIFY(!integerSetting(huge, "Gtk/EnableAnimations"));
    QVERIFY(!integerSetting(QByteArray(64, '\xff'), "Gtk/EnableAnimations"));
  }

  void motionIsReducedWhenTheDesktopSaysSo() {
    const auto platform = makePlatform();
    QVERIFY(!platform.systemInfo->isMotionReduced());
    XClient manager;
    manager.openWindow(0, 0, 10, 10);
    manager.own("_XSETTINGS_S0");
    manager.setProperty("_XSETTINGS_SETTINGS", settings(QDataStream::LittleEndian, 0));
    QVERIFY(platform.systemInfo->isMotionReduced());
    manager.setProperty("_XSETTINGS_SETTINGS", settings(QDataStream::LittleEndian, 1));
    QVERIFY(!platform.systemInfo->isMotionReduced());
  }

  void compositorMakesPanelsTranslucent() {
    const auto platform = makePlatform();
    QVERIFY(!platform.panelWindow->isTranslucencyAvailable());
    XClient compositor;
    compositor.openWindow(0, 0, 10, 10);
    compositor.own("_NET_WM_CM_S0");
    QVERIFY(platform.panelWindow->isTranslucencyAvailable());
  }

  void factsOfTheDesktop() {
    const auto platform = makePlatform();
    QVERIFY(!platform.systemInfo->osVersion().isEmpty());
    QCOMPARE(platform.systemInfo->shortcutOwnerHint(), QStringLiteral("Openbox"));
  }

  /// There is no sound server here, and nobody waits for it.
  void soundsDoNotHoldUp() {
    const auto platform = makePlatform();
    QElapsedTimer timer;
    timer.start();
    platform.sounds->playCompletion();
    platform.sounds->beep();
    QVERIFY(timer.elapsed() < 1000);
  }
};

QTEST_MAIN(X11SystemInfoTest)
#include "x11_system_info_test.moc"
