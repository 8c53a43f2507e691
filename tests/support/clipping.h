#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QWidget>

/// How much larger `widget` would have to be to show its whole text; empty or negative where it has room.
inline QSize missingRoom(const QWidget& widget) {
  const auto* label = qobject_cast<const QLabel*>(&widget);
  if (label && label->wordWrap()) return {0, label->heightForWidth(label->width()) - label->height()};
  const QSize needed = widget.sizeHint();
  return {needed.width() - widget.width(), needed.height() - widget.height()};
}

inline bool showsText(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return !label->text().isEmpty();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return !button->text().isEmpty();
  return qobject_cast<const QComboBox*>(&widget) != nullptr;
}

/// The visible labels, buttons and lists of `window` whose text does not fit, each with what is missing.
inline QStringList clippedTexts(const QWidget& window) {
  QStringList clipped;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || !showsText(*widget)) continue;
    const QSize missing = missingRoom(*widget);
    if (missing.width() <= 0 && missing.height() <= 0) continue;
    const QString text = widget->property("text").toString();
    clipped.append(QStringLiteral("%1 “%2” lacks %3×%4")
                       .arg(QLatin1StringView(widget->metaObject()->className()), text)
                       .arg(missing.width())
                       .arg(missing.height()));
  }
  return clipped;
}
