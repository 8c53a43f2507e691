#include "app/settings/unfolding_row.h"

#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

namespace {

QScrollArea* pageOf(QWidget& widget) {
  for (QWidget* parent = widget.parentWidget(); parent; parent = parent->parentWidget())
    if (auto* page = qobject_cast<QScrollArea*>(parent)) return page;
  return nullptr;
}

}  // namespace

UnfoldingRow::UnfoldingRow(const QString& title, const QString& description, QWidget* control, QWidget* body)
    : body_(body) {
  auto* label = new QLabel(title);
  label->setFont(Theme::rowFont());
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addWidget(label);
  texts->addWidget(makeDetailLabel(description));
  auto* row = new QHBoxLayout;
  row->setSpacing(2 * Theme::kGrid);
  row->addLayout(texts, 1);
  row->addWidget(control, 0, Qt::AlignRight | Qt::AlignVCenter);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(3 * Theme::kGrid / 2);
  column->addLayout(row);
  column->addWidget(body);
  body->hide();
  control->setAccessibleDescription(description);
}

void UnfoldingRow::unfold(bool open) {
  body_->setVisible(open);
  if (!open) return;
  // Its place is known once the layout has made room.
  const auto reveal = [this] {
    if (QScrollArea* page = pageOf(*this)) page->ensureWidgetVisible(body_, 0, 3 * Theme::kGrid);
  };
  QMetaObject::invokeMethod(this, reveal, Qt::QueuedConnection);
}

bool UnfoldingRow::isUnfolded() const { return !body_->isHidden(); }
