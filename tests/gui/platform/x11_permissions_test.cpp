#include <QTest>

#include "platform/platform.h"

namespace {

const QString kLogIn = QStringLiteral("log in with an X11 session");

}  // namespace

class X11PermissionsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() {
    qunsetenv("XDG_SESSION_TYPE");
    qunsetenv("WAYLAND_DISPLAY");
  }

  void plainX11AllowsEverything() {
    const auto platform = makePlatform();
    for (const auto& [permission, name] : kPermissionNames) {
      QCOMPARE(platform.permissions->state(permission), PermissionState::granted);
      QCOMPARE(platform.permissions->remedy(permission), QString());
    }
    QCOMPARE(platform.permissions->shortcutsRemedy(), QString());
  }

  void waylandIsToldAsItIs_data() {
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("session type") << QByteArray("XDG_SESSION_TYPE") << QByteArray("wayland");
    QTest::newRow("compositor's socket") << QByteArray("WAYLAND_DISPLAY") << QByteArray("wayland-0");
  }
  void waylandIsToldAsItIs() {
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, value);
    const auto platform = makePlatform();
    const Permissions& permissions = *platform.permissions;
    qputenv(variable.constData(), value);
    // Programs on XWayland can be typed into, so nothing is held back, but it is said.
    QVERIFY(permissions.isAccessibilityTrusted());
    QVERIFY(permissions.remedy(Permission::accessibility).contains(kLogIn));
    QCOMPARE(permissions.state(Permission::screenRecording), PermissionState::unavailable);
    QVERIFY(permissions.remedy(Permission::screenRecording).contains(kLogIn));
    QVERIFY(permissions.shortcutsRemedy().contains(QStringLiteral("vantle doctor")));
  }
};

QTEST_MAIN(X11PermissionsTest)
#include "x11_permissions_test.moc"
