#pragma once

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

#include <algorithm>

/// The visible controls that a screen reader could not name.
inline QStringList unnamedControls(QWidget& window) {
  QStringList unnamed;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    const bool isControl = widget->focusPolicy() != Qt::NoFocus && widget->isVisible();
    if (!isControl || qobject_cast<const QAbstractScrollArea*>(widget) || qobject_cast<const QLabel*>(widget)) continue;
    if (qobject_cast<const QLineEdit*>(widget) && widget->objectName() == QLatin1StringView("qt_spinbox_lineedit"))
      continue;
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    if (!interface || interface->text(QAccessible::Name).isEmpty())
      unnamed.append(QString::fromLatin1(widget->metaObject()->className()));
  }
  return unnamed;
}

/// The visible control whose accessible name begins so; null without one.
template <class Control>
Control* named(QWidget& window, const QString& start) {
  for (Control* control : window.findChildren<Control*>())
    if (control->isVisible() && control->accessibleName().startsWith(start)) return control;
  return nullptr;
}

/// The visible button with that text; null without one.
inline QPushButton* buttonWith(const QWidget& window, const QString& text) {
  for (QPushButton* button : window.findChildren<QPushButton*>())
    if (button->isVisible() && button->text() == text) return button;
  return nullptr;
}

/// The texts of the visible labels.
inline QStringList shownTexts(const QWidget& window) {
  QStringList texts;
  for (const QLabel* label : window.findChildren<QLabel*>())
    if (label->isVisible() && !label->text().isEmpty()) texts.append(label->text());
  return texts;
}

/// Whether a visible label says so, alone or among more.
inline bool isShown(const QWidget& window, const QString& text) {
  return std::ranges::any_of(shownTexts(window), [&text](const QString& shown) { return shown.contains(text); });
}
