#include "app/settings/credential_control.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 280;

QPushButton* makeButton(const QString& text, const QString& of, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setAccessibleName(u"%1: %2"_s.arg(of, text));
  button->hide();
  return button;
}

}  // namespace

CredentialControl::CredentialControl(UserCredential& credential, const QString& name)
    : credential_(credential),
      kept_(makeDetailLabel(u"In the keychain"_s, this)),
      replace_(makeButton(u"Replace…"_s, name, this)),
      remove_(makeButton(u"Remove"_s, name, this)),
      field_(new QLineEdit(this)),
      save_(makeButton(u"Save"_s, name, this)) {
  setMinimumWidth(kWidth);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(kept_, 1);
  for (QPushButton* button : {replace_, remove_}) row->addWidget(button);
  row->addWidget(field_, 1);
  row->addWidget(save_);
  kept_->hide();
  kept_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  field_->setEchoMode(QLineEdit::Password);
  field_->setPlaceholderText(u"Not set"_s);
  field_->setAccessibleName(name);
  save_->show();
  save_->setEnabled(false);
  setFocusProxy(field_);
  connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) { save_->setEnabled(!text.isEmpty()); });
  connect(field_, &QLineEdit::returnPressed, this, &CredentialControl::save);
  connect(save_, &QPushButton::clicked, this, &CredentialControl::save);
  connect(replace_, &QPushButton::clicked, this, [this] { showField(true); });
  connect(remove_, &QPushButton::clicked, this, &CredentialControl::remove);
}

void CredentialControl::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!job_.isRunning()) look();
}

void CredentialControl::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && isReplacing_)
    showKept(true);
  else
    QWidget::keyPressEvent(event);
}

void CredentialControl::look() {
  job_ = Job::start();
  credential_.read(job_, [this](const auto& secret) {
    if (!secret && remark_) remark_->showError(secret.error().description());
    if (secret && field_->text().isEmpty()) showKept(!secret->isEmpty());
  });
}

void CredentialControl::save() {
  const QByteArray secret = field_->text().trimmed().toUtf8();
  if (secret.isEmpty()) return;
  job_ = Job::start();
  credential_.store(secret, job_, [this](const auto& result) {
    if (tookEffect(result)) showKept(true);
  });
}

void CredentialControl::remove() {
  job_ = Job::start();
  credential_.remove(job_, [this](const auto& result) {
    if (tookEffect(result)) showKept(false);
  });
}

bool CredentialControl::tookEffect(const std::expected<void, CredentialError>& result) {
  if (remark_) remark_->showError(result ? QString() : result.error().description());
  return result.has_value();
}

void CredentialControl::showKept(bool isKept) {
  if (!isKept) {
    showField(false);
    return;
  }
  const bool hadFocus = field_->hasFocus() || save_->hasFocus();
  isReplacing_ = false;
  field_->clear();
  for (QWidget* widget :
       {static_cast<QWidget*>(kept_), static_cast<QWidget*>(replace_), static_cast<QWidget*>(remove_)})
    widget->show();
  if (hadFocus) replace_->setFocus();
  setFocusProxy(replace_);
  field_->hide();
  save_->hide();
}

void CredentialControl::showField(bool isReplacing) {
  const bool hadFocus = replace_->hasFocus() || remove_->hasFocus();
  isReplacing_ = isReplacing;
  field_->setPlaceholderText(isReplacing ? u"The new one"_s : u"Not set"_s);
  field_->show();
  save_->show();
  setFocusProxy(field_);
  if (hadFocus) field_->setFocus();
  for (QWidget* widget :
       {static_cast<QWidget*>(kept_), static_cast<QWidget*>(replace_), static_cast<QWidget*>(remove_)})
    widget->hide();
}
