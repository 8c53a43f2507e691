#include "core/ui/launcher/sort_mode_control.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>

#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSegment{30, 24};
constexpr int kLabelledHeight = 28;
constexpr int kInset = 2;
constexpr int kSymbol = 16;
constexpr int kLabelGap = 6;

class Segment final : public QAbstractButton {
 public:
  Segment(const ToolSortModeText& mode, SortModeControl::Look look, QWidget* parent)
      : QAbstractButton(parent), icon_(mode.icon), hasLabel_(look == SortModeControl::Look::labels) {
    setCheckable(true);
    setAutoExclusive(true);
    const QString label = QString::fromUtf16(mode.label);
    setAccessibleName(label);
    if (hasLabel_) {
      setText(label);
      setMinimumHeight(kLabelledHeight);
      setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    } else {
      setFixedSize(kSegment);
      setFocusPolicy(Qt::NoFocus);
      setToolTip(label + keyText(u" (⌘S)\n"_s) + parent->accessibleDescription());
    }
  }

  QSize sizeHint() const override { return {labelledWidth(), kLabelledHeight}; }

 protected:
  void enterEvent(QEnterEvent*) override { update(); }
  void leaveEvent(QEvent*) override { update(); }
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked() || hasFocus()) paintGround(painter, theme);
    const QColor color = isChecked() || underMouse() ? theme.text : theme.secondary;
    const int left = hasLabel_ ? (width() - contentsWidth()) / 2 : (width() - kSymbol) / 2;
    paintSymbol(painter, icon_, QRect(left, (height() - kSymbol) / 2, kSymbol, kSymbol), color);
    painter.setFont(Theme::detailFont());
    painter.setPen(color);
    if (hasLabel_) painter.drawText(rect().adjusted(left + kSymbol + kLabelGap, 0, 0, 0), Qt::AlignVCenter, text());
  }

 private:
  void paintGround(QPainter& painter, const Theme& theme) const {
    painter.setPen(hasFocus() ? QPen(theme.accent, 1.5) : QPen(theme.hairline, 1));
    painter.setBrush(theme.dark ? theme.switchOff : theme.card);
    const double inset = hasFocus() ? 0.75 : 0.5;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 6, 6);
  }

  int contentsWidth() const {
    return kSymbol + kLabelGap + QFontMetrics(Theme::detailFont()).horizontalAdvance(text());
  }
  int labelledWidth() const { return contentsWidth() + 2 * Theme::kGrid; }

  QString icon_;
  bool hasLabel_;
};

}  // namespace

SortModeControl::SortModeControl(Look look, QWidget* parent) : QWidget(parent), look_(look) {
  setAccessibleName(u"Order of the grid"_s);
  setAccessibleDescription(u"How the grid is ordered — pinned tools always come first"_s);
  setToolTip(accessibleDescription());
  setSizePolicy(look == Look::labels ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Fixed);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kInset, kInset, kInset, kInset);
  row->setSpacing(0);
  for (const ToolSortModeText& mode : toolSortModes()) {
    auto* segment = new Segment(mode, look, this);
    connect(segment, &QAbstractButton::clicked, this, [this, chosen = mode.mode] { Q_EMIT modeChosen(chosen); });
    segments_.push_back(segment);
    row->addWidget(segment);
  }
}

void SortModeControl::setMode(ToolSortMode mode) {
  const auto modes = toolSortModes();
  for (std::size_t i = 0; i < segments_.size(); ++i) {
    const bool isInForce = modes[i].mode == mode;
    segments_[i]->setChecked(isInForce);
    // One stop for the tab key: arrows go on from there.
    if (look_ == Look::labels) segments_[i]->setFocusPolicy(isInForce ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

void SortModeControl::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(themeOf(*this).raised);
  painter.drawRoundedRect(rect(), Theme::kRowRadius, Theme::kRowRadius);
}
