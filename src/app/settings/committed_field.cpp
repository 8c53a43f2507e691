#include "app/settings/committed_field.h"

#include <QKeyEvent>

#include "core/ui/settings_form.h"

namespace {

constexpr int kWidth = 280;

}  // namespace

CommittedField::CommittedField(Binding binding, const QString& placeholder) : binding_(std::move(binding)) {
  setPlaceholderText(placeholder);
  setFixedWidth(kWidth);
  follow();
  connect(this, &QLineEdit::editingFinished, this, &CommittedField::commit);
  connect(this, &QLineEdit::textEdited, this, [this] { showFault({}); });
}

void CommittedField::follow() {
  if (isModified()) return;
  const QString saved = binding_.saved();
  if (text() != saved) setText(saved);
}

void CommittedField::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape || !isModified()) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  setText(binding_.saved());
  showFault({});
}

void CommittedField::commit() {
  if (!isModified()) return;
  const QString wanted = text().trimmed();
  const QString fault = binding_.fault(wanted);
  showFault(fault);
  if (!fault.isEmpty()) return;
  setText(wanted);
  binding_.take(wanted);
}

void CommittedField::showFault(const QString& text) {
  if (remark_) remark_->showError(text);
}
