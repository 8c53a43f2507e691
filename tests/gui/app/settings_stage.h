#pragma once

#include <QTest>

#include "app/settings/settings_window.h"
#include "support/app_stage.h"
#include "support/controls.h"

/// A settings window over a whole core.
struct SettingsStage : AppStage {
  using AppStage::AppStage;

  SettingsSelection selection;
  SettingsWindow window{context, selection};

  void show(SettingsTab tab) {
    selection.setTab(tab);
    window.open();
    QVERIFY(QTest::qWaitForWindowActive(&window));
  }
  /// A key for whatever has the keyboard.
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const focused = window.focusWidget();
    QTest::keyClick(focused ? focused : &window, key, modifiers);
  }
  /// As a screen reader calls it.
  static QString nameOf(QWidget* widget) {
    QAccessibleInterface* interface = widget ? QAccessible::queryAccessibleInterface(widget) : nullptr;
    return interface ? interface->text(QAccessible::Name) : QString();
  }
  QString focusedName() const { return nameOf(window.focusWidget()); }
  /// The one with that name, shown or not yet.
  template <class Control>
  Control& control(const QString& name) {
    Control* found = nullptr;
    for (Control* candidate : window.findChildren<Control*>())
      if (candidate->accessibleName() == name || nameOf(candidate) == name) found = candidate;
    if (!found) qFatal("there is no control %s", qPrintable(name));
    return *found;
  }
};
