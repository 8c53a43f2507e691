#include "core/ui/settings_form.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"
#include "core/ui/toggle_switch.h"

namespace {

constexpr int kColumnWidth = 712;
constexpr int kRowPadding = 12;
constexpr int kStepSymbol = 18;

/// One-pixel line that follows the theme.
class Hairline final : public QWidget {
 public:
  explicit Hairline(QWidget* parent) : QWidget(parent) { setFixedHeight(1); }

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), themeOf(*this).hairline); }
};

/// Secondary text that follows the theme.
class DetailLabel final : public QLabel {
 public:
  DetailLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setFont(Theme::detailFont());
    setWordWrap(true);
    setForegroundRole(QPalette::PlaceholderText);
  }
};

QWidget* makeStep(const HowItWorksStep& step) {
  auto* widget = new QWidget;
  auto* row = new QHBoxLayout(widget);
  row->setContentsMargins(0, Theme::kGrid, 0, Theme::kGrid);
  row->setSpacing(Theme::kGrid + Theme::kGrid / 2);
  row->addWidget(new SymbolLabel(QString::fromUtf16(step.symbol), kStepSymbol));
  auto* text = makeDetailLabel(QString::fromUtf16(step.text));
  text->setForegroundRole(QPalette::WindowText);
  row->addWidget(text, 1);
  return widget;
}

SettingsSection* addHowItWorksSection(QVBoxLayout& column) {
  QLabel* heading = makeHeading(QStringLiteral("How it works"));
  // Below another section it keeps its distance.
  if (column.count() > 0) heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  column.addWidget(heading);
  auto* section = new SettingsSection;
  column.addWidget(section);
  return section;
}

}  // namespace

QLabel* makeDetailLabel(const QString& text, QWidget* parent) { return new DetailLabel(text, parent); }

QLabel* makeHeading(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  QFont font = Theme::rowFont();
  font.setWeight(QFont::DemiBold);
  label->setFont(font);
  return label;
}

RowRemark::RowRemark(QWidget* parent) : QLabel(parent) {
  setFont(Theme::detailFont());
  setWordWrap(true);
  setTextFormat(Qt::PlainText);
  // A path in an error is there to be copied.
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setFocusPolicy(Qt::NoFocus);
  hide();
}

void RowRemark::showText(const QString& text, bool isError) {
  isError_ = isError;
  setText(text);
  setVisible(!text.isEmpty());
  applyColor();
}

void RowRemark::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) applyColor();
}

void RowRemark::applyColor() {
  const Theme& theme = themeOf(*this);
  const QColor wanted = isError_ ? theme.failure : theme.text;
  if (palette().color(QPalette::WindowText) == wanted) return;
  QPalette colors = palette();
  colors.setColor(QPalette::WindowText, wanted);
  setPalette(colors);
}

SettingsSection::SettingsSection(QWidget* parent) : QFrame(parent), rows_(new QVBoxLayout(this)) {
  rows_->setContentsMargins(2 * Theme::kGrid, 0, 2 * Theme::kGrid, 0);
  rows_->setSpacing(0);
}

RowRemark* SettingsSection::addRow(const QString& title, const QString& description, QWidget* control) {
  addSeparator();
  auto* label = new QLabel(title, this);
  label->setFont(Theme::rowFont());
  label->setBuddy(control);
  if (control->accessibleName().isEmpty()) control->setAccessibleName(title);
  if (!description.isEmpty()) control->setAccessibleDescription(description);

  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addWidget(label);
  if (!description.isEmpty()) texts->addWidget(makeDetailLabel(description, this));
  auto* remark = new RowRemark(this);
  texts->addWidget(remark);
  auto* row = new QHBoxLayout;
  const int overhang = qobject_cast<ToggleSwitch*>(control) ? ToggleSwitch::kRing : 0;
  row->setContentsMargins(0, kRowPadding, -overhang, kRowPadding);
  row->setSpacing(2 * Theme::kGrid);
  row->addLayout(texts, 1);
  row->addWidget(control, 0, Qt::AlignRight | Qt::AlignVCenter);
  rows_->addLayout(row);
  return remark;
}

void SettingsSection::addWide(QWidget* widget) {
  addSeparator();
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, kRowPadding, 0, kRowPadding);
  row->addWidget(widget);
  rows_->addLayout(row);
}

void SettingsSection::addSeparator() {
  if (rows_->count() > 0) rows_->addWidget(new Hairline(this));
}

void SettingsSection::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(theme.hairline);
  painter.setBrush(theme.card);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kRowRadius + 2, Theme::kRowRadius + 2);
}

SettingsPage::SettingsPage(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  // Its controls take the focus; the keys that they leave alone scroll the page.
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  // Desktops that lay windows out side by side make it as wide as they like.
  setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* column = new QWidget;
  column->setMaximumWidth(kColumnWidth + 6 * Theme::kGrid);
  column_ = new QVBoxLayout(column);
  column_->setContentsMargins(3 * Theme::kGrid, 3 * Theme::kGrid, 3 * Theme::kGrid, 3 * Theme::kGrid);
  column_->setSpacing(Theme::kGrid);
  column_->addStretch(1);
  setWidget(column);
  viewport()->setAutoFillBackground(false);
  column->setAutoFillBackground(false);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
}

// Whoever clicks sees what he clicks on, and a page that moves under the pointer would take it away.
void SettingsPage::follow(QWidget* focused) {
  const bool isOurs = focused && widget()->isAncestorOf(focused);
  if (isOurs && QGuiApplication::mouseButtons() == Qt::NoButton)
    ensureWidgetVisible(focused, 3 * Theme::kGrid, 3 * Theme::kGrid);
}

SettingsSection* SettingsPage::addSection(const QString& title) {
  if (!title.isEmpty()) addHeading(title);
  auto* section = new SettingsSection;
  addWidget(section);
  return section;
}

void SettingsPage::addHeading(const QString& title) {
  QLabel* heading = makeHeading(title);
  if (column_->count() > 1) heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  addWidget(heading);
}

void SettingsPage::addNote(const QString& text) { addWidget(makeDetailLabel(text)); }

void SettingsPage::addWidget(QWidget* widget) { column_->insertWidget(column_->count() - 1, widget); }

void SettingsPage::scrollToTop() { verticalScrollBar()->setValue(0); }

void addHowItWorks(QVBoxLayout& column, const QStringList& notes) {
  auto* section = addHowItWorksSection(column);
  for (const QString& note : notes) section->addWide(makeDetailLabel(note));
}

void addHowItWorks(QVBoxLayout& column, std::span<const HowItWorksStep> steps) {
  auto* section = addHowItWorksSection(column);
  for (const HowItWorksStep& step : steps) section->addWide(makeStep(step));
}
