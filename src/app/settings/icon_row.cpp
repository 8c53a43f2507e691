#include "app/settings/icon_row.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include <algorithm>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

namespace {

constexpr int kTileRoom = Theme::kIconTile + 12;

void showText(QLabel& label, const QString& text) {
  label.setText(text);
  label.setVisible(!text.isEmpty());
}

}  // namespace

IconRow::IconRow(const QString& symbol, const QString& title, const QString& detail)
    : tile_{symbol, {}, {}},
      title_(new QLabel(this)),
      detail_(makeDetailLabel({}, this)),
      remark_(makeDetailLabel({}, this)),
      row_(new QHBoxLayout) {
  title_->setFont(Theme::rowFont());
  title_->setWordWrap(true);
  remark_->setForegroundRole(QPalette::WindowText);
  remark_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addStretch(1);
  for (QLabel* label : {title_, detail_}) texts->addWidget(label);
  texts->addStretch(1);
  row_->setSpacing(2 * Theme::kGrid);
  row_->addLayout(texts, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kTileRoom, 0, 0, 0);
  column->setSpacing(4);
  column->addLayout(row_);
  column->addWidget(remark_);
  setMinimumHeight(Theme::kIconTile);
  setTitle(title);
  setDetail(detail);
  setRemark({});
}

void IconRow::setTile(const IconTile& tile, QColor Theme::* tone) {
  tile_ = tile;
  tone_ = tone;
  update();
}

void IconRow::setTitle(const QString& title) { showText(*title_, title); }

void IconRow::setDetail(const QString& detail) { showText(*detail_, detail); }

void IconRow::setRemark(const QString& remark) { showText(*remark_, remark); }

void IconRow::addEnd(QWidget* control) { row_->addWidget(control, 0, Qt::AlignRight | Qt::AlignVCenter); }

void IconRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const int top = std::max(0, row_->geometry().center().y() + 1 - Theme::kIconTile / 2);
  const QRectF place(0, top, Theme::kIconTile, Theme::kIconTile);
  const Theme& theme = themeOf(*this);
  IconTile tile = tile_;
  if (tone_) tile.color = theme.*tone_;
  tile.paint(painter, place, theme);
}
