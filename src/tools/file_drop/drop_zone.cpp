#include "tools/file_drop/drop_zone.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kIcon = 40;
constexpr int kTextWidth = 320;
constexpr qreal kRadius = 10;
constexpr int kTargetedAlpha = 28;

QLabel* centred(QLabel* label) {
  label->setAlignment(Qt::AlignCenter);
  return label;
}

QPushButton* makeButton(const QString& text) {
  auto* button = new QPushButton(text);
  // The window's keys reach both; none of its controls takes the focus.
  button->setFocusPolicy(Qt::NoFocus);
  return button;
}

}  // namespace

DropZone::DropZone(QWidget* parent) : QWidget(parent) {
  auto* title = centred(makeHeading(u"Drop files or folders here"_s));
  auto* detail =
      centred(makeDetailLabel(u"They'll be zipped and uploaded as one archive — the link lands on your clipboard."_s));
  detail->setFixedWidth(kTextWidth);
  auto* files = makeButton(u"Choose Files…"_s);
  auto* folder = makeButton(u"Choose Folder…"_s);
  connect(files, &QPushButton::clicked, this, &DropZone::filesWanted);
  connect(folder, &QPushButton::clicked, this, &DropZone::folderWanted);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(Theme::kGrid);
  buttons->addStretch(1);
  buttons->addWidget(files);
  buttons->addWidget(folder);
  buttons->addStretch(1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(2 * Theme::kGrid, Theme::kGrid, 2 * Theme::kGrid, Theme::kGrid);
  column->setSpacing(Theme::kGrid);
  column->addStretch(1);
  column->addWidget(new SymbolLabel(u"arrow.down.doc.fill"_s, kIcon), 0, Qt::AlignHCenter);
  column->addWidget(title);
  column->addWidget(detail, 0, Qt::AlignHCenter);
  column->addSpacing(Theme::kGrid);
  column->addLayout(buttons);
  column->addStretch(1);
}

void DropZone::setTargeted(bool targeted) {
  if (targeted == targeted_) return;
  targeted_ = targeted;
  update();
}

void DropZone::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor ground = theme.accent;
  ground.setAlpha(targeted_ ? kTargetedAlpha : 0);
  painter.setBrush(ground);
  painter.setPen(QPen(targeted_ ? theme.accent : theme.edge, 1.5, targeted_ ? Qt::SolidLine : Qt::DashLine));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
}
