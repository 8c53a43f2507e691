#include "core/ui/launcher/sort_mode_control.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSegment{30, 24};
constexpr int kInset = 2;
constexpr int kSymbol = 16;

class Segment final : public QAbstractButton {
 public:
  Segment(const ToolSortModeText& mode, QWidget* parent) : QAbstractButton(parent), icon_(mode.icon) {
    setFixedSize(kSegment);
    setFocusPolicy(Qt::NoFocus);
    setCheckable(true);
    setAutoExclusive(true);
    const QString label = QString::fromUtf16(mode.label);
    setAccessibleName(label);
    setToolTip(label + u" (⌘S)\n"_s + parent->accessibleDescription());
  }

 protected:
  void enterEvent(QEnterEvent*) override { update(); }
  void leaveEvent(QEvent*) override { update(); }
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked()) {
      painter.setPen(QPen(theme.hairline, 1));
      painter.setBrush(theme.dark ? theme.switchOff : theme.card);
      painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    }
    const QRectF symbol(QPointF((width() - kSymbol) / 2.0, (height() - kSymbol) / 2.0), QSizeF(kSymbol, kSymbol));
    paintSymbol(painter, icon_, symbol, isChecked() || underMouse() ? theme.text : theme.secondary);
  }

 private:
  QString icon_;
};

}  // namespace

SortModeControl::SortModeControl(QWidget* parent) : QWidget(parent) {
  setAccessibleName(u"Order of the grid"_s);
  setAccessibleDescription(u"How the grid is ordered — pinned tools always come first"_s);
  setToolTip(accessibleDescription());
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kInset, kInset, kInset, kInset);
  row->setSpacing(0);
  for (const ToolSortModeText& mode : toolSortModes()) {
    auto* segment = new Segment(mode, this);
    connect(segment, &QAbstractButton::clicked, this, [this, chosen = mode.mode] { Q_EMIT modeChosen(chosen); });
    segments_.push_back(segment);
    row->addWidget(segment);
  }
}

void SortModeControl::setMode(ToolSortMode mode) {
  const auto modes = toolSortModes();
  for (std::size_t i = 0; i < segments_.size(); ++i) segments_[i]->setChecked(modes[i].mode == mode);
}

void SortModeControl::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(themeOf(*this).raised);
  painter.drawRoundedRect(rect(), Theme::kRowRadius, Theme::kRowRadius);
}
