#include "tools/asking/ask_composer.h"

#include <QAbstractButton>
#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/ui/icon.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/asking/question_field.h"

namespace {

constexpr int kInset = 12;
constexpr int kButton = 26;
constexpr int kIcon = 16;

}  // namespace

AskComposer::AskComposer(AskModel& model, QWidget* parent)
    : QWidget(parent),
      field_(new QuestionField(model)),
      hint_(makeDetailLabel({})),
      row_(new QHBoxLayout),
      column_(new QVBoxLayout(this)) {
  hint_->setWordWrap(false);
  column_->setContentsMargins(kInset, kInset - 2, Theme::kGrid, Theme::kGrid - 2);
  column_->setSpacing(Theme::kGrid / 2);
  column_->addWidget(field_);
  row_->setSpacing(Theme::kGrid / 2);
  row_->addWidget(hint_, 1);
  row_->addSpacing(0);
  column_->addLayout(row_);
  hint_->setMinimumHeight(kButton);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  field_->installEventFilter(this);
}

void AskComposer::setHint(const QString& hint) { hint_->setText(hint); }

void AskComposer::addAbove(QWidget* widget) {
  column_->insertWidget(0, widget);
  above_ = widget;
}

std::vector<QWidget*> AskComposer::stops() const {
  std::vector<QWidget*> all;
  if (above_)
    for (QAbstractButton* button : above_->findChildren<QAbstractButton*>()) all.push_back(button);
  all.push_back(field_);
  for (const auto& [button, symbol] : buttons_) all.push_back(button);
  return all;
}

QToolButton* AskComposer::addButton(const QString& symbol, const QString& name, const QString& help) {
  auto* button = new QToolButton;
  button->setAccessibleName(name);
  button->setToolTip(help);
  button->setAccessibleDescription(help);
  button->setFixedSize(kButton, kButton);
  button->setIconSize({kIcon, kIcon});
  button->setFocusPolicy(Qt::TabFocus);
  row_->addWidget(button);
  buttons_.emplace_back(button, symbol);
  drawIcons();
  return button;
}

void AskComposer::drawIcons() {
  for (const auto& [button, symbol] : buttons_) {
    QIcon icon(symbolPixmap(symbol, kIcon, themeOf(*this).text, devicePixelRatioF()));
    icon.addPixmap(symbolPixmap(symbol, kIcon, themeOf(*this).switchOff, devicePixelRatioF()), QIcon::Disabled);
    button->setIcon(icon);
  }
}

void AskComposer::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) drawIcons();
}

bool AskComposer::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  return QWidget::eventFilter(watched, event);
}

/// A field with all that belongs to it, so the edge is around all of it.
void AskComposer::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(field_->hasFocus() ? theme.accent : theme.edge, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kRowRadius, Theme::kRowRadius);
}
