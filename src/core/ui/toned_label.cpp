#include "core/ui/toned_label.h"

#include <QEvent>

#include "core/ui/theme.h"

TonedLabel::TonedLabel(QColor Theme::* tone, const QString& text, QWidget* parent) : QLabel(text, parent), tone_(tone) {
  colour();
}

void TonedLabel::setTone(QColor Theme::* tone) {
  tone_ = tone;
  colour();
}

void TonedLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) colour();
}

void TonedLabel::colour() {
  const QColor wanted = themeOf(*this).*tone_;
  if (palette().color(QPalette::WindowText) == wanted) return;
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, wanted);
  setPalette(colours);
}
