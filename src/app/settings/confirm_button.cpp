#include "app/settings/confirm_button.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

QPushButton* makeButton(const ConfirmButton::Label& label, QWidget* parent) {
  auto* button = new QPushButton(label.text, parent);
  button->setAccessibleName(label.name);
  return button;
}

}  // namespace

ConfirmButton::ConfirmButton(const Texts& texts)
    : button_(makeButton(texts.button, this)),
      question_(new QLabel(texts.question, this)),
      cancel_(makeButton(texts.cancel, this)),
      confirm_(makeButton(texts.confirm, this)) {
  setFocusProxy(button_);
  setAccessibleName(texts.question);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins({});
  row->setSpacing(Theme::kGrid);
  for (QWidget* part : std::initializer_list<QWidget*>{question_, cancel_, confirm_, button_}) row->addWidget(part);
  confirm_->setAccessibleDescription(texts.question);
  connect(button_, &QPushButton::clicked, this, [this] { ask(true); });
  connect(cancel_, &QPushButton::clicked, this, [this] { ask(false); });
  connect(confirm_, &QPushButton::clicked, this, [this] {
    ask(false);
    Q_EMIT confirmed();
  });
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { takeBackWhenLeft(now); });
  ask(false);
}

void ConfirmButton::ask(bool asking) {
  const bool hadFocus = isAncestorOf(QApplication::focusWidget());
  // The new ones come before the old ones go, so that the focus has somewhere to go to.
  for (QWidget* part : std::initializer_list<QWidget*>{question_, cancel_, confirm_}) part->setVisible(asking);
  button_->setVisible(true);
  if (hadFocus) (asking ? cancel_ : button_)->setFocus(Qt::OtherFocusReason);
  button_->setVisible(!asking);
}

void ConfirmButton::takeBackWhenLeft(const QWidget* focused) {
  if (focused && !confirm_->isHidden() && !isAncestorOf(focused)) ask(false);
}

void ConfirmButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !confirm_->isHidden())
    ask(false);
  else
    QWidget::keyPressEvent(event);
}

void ConfirmButton::hideEvent(QHideEvent*) { ask(false); }
