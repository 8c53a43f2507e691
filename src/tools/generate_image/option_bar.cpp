#include "tools/generate_image/option_bar.h"

#include <QHBoxLayout>
#include <QPainter>

#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kHeight = 26;
constexpr qreal kRadius = 6;
constexpr int kPadding = 10;

class OptionButton final : public QPushButton {
 public:
  explicit OptionButton(const QString& text) : QPushButton(text) {
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::NoFocus);
    setFixedHeight(kHeight);
    setFont(Theme::detailFont());
  }
  QSize sizeHint() const override { return {fontMetrics().horizontalAdvance(text()) + kPadding, kHeight}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? theme.selection : underMouse() ? theme.hover : QColor(Qt::transparent));
    painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), kRadius - 1, kRadius - 1);
    painter.setPen(isChecked() ? theme.onAccent : theme.text);
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignCenter, text());
  }
};

/// The ground that the choices share.
class OptionGround final : public QWidget {
 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeOf(*this).raised);
    painter.drawRoundedRect(rect(), kRadius, kRadius);
  }
};

}  // namespace

OptionBar::OptionBar(const QString& name, const QString& keys, const QStringList& labels, QWidget* parent)
    : QWidget(parent) {
  auto* ground = new OptionGround;
  auto* row = new QHBoxLayout(ground);
  row->setContentsMargins({});
  row->setSpacing(0);
  for (const QString& label : labels) {
    auto* button = new OptionButton(label);
    button->setAccessibleName(u"%1: %2"_s.arg(name, label));
    button->setToolTip(u"%1: %2 (%3)"_s.arg(name, label, keys));
    const int index = static_cast<int>(buttons_.size());
    connect(button, &QPushButton::clicked, this, [this, index] { Q_EMIT chosen(index); });
    row->addWidget(button, 1);
    buttons_.push_back(button);
  }
  auto* whole = new QHBoxLayout(this);
  whole->setContentsMargins({});
  whole->addWidget(ground, 1);
}

void OptionBar::setCurrent(int index) { buttons_.at(static_cast<std::size_t>(index))->setChecked(true); }
