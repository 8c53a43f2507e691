#include "app/usage/usage_view.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "app/usage/meter_view.h"
#include "app/usage/plan_badge.h"
#include "app/usage/usage_window_controller.h"
#include "core/ui/icon.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kEdge = 3 * Theme::kGrid;
constexpr int kGauge = 32;
constexpr int kSmallSymbol = 16;

QString messageFor(UsageWindowController::State state) {
  return state == UsageWindowController::State::loading ? u"Loading your usage…"_s : u"No usage loaded yet."_s;
}

}  // namespace

UsageView::UsageView(UsageWindowController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      gauge_(new QLabel),
      badge_(new PlanBadge),
      month_(makeDetailLabel({})),
      body_(new QStackedWidget),
      message_(makeDetailLabel({})),
      scroll_(new QScrollArea),
      calendar_(new QLabel),
      refresh_(new QPushButton(u"Refresh"_s)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kEdge, kEdge, kEdge, 2 * Theme::kGrid);
  column->setSpacing(2 * Theme::kGrid);
  column->addWidget(makeHeader());
  column->addWidget(makeBody(), 1);
  column->addWidget(makeFooter());
  connect(&controller_, &UsageWindowController::changed, this, &UsageView::follow);
  follow();
  followTheme();
}

QWidget* UsageView::makeHeader() {
  auto* header = new QWidget;
  auto* title = new QLabel(u"Usage"_s);
  QFont font = Theme::fieldFont();
  font.setWeight(QFont::DemiBold);
  title->setFont(font);
  month_->setTextFormat(Qt::PlainText);
  month_->setWordWrap(false);
  auto* head = new QHBoxLayout;
  head->setSpacing(Theme::kGrid);
  head->addWidget(title);
  head->addWidget(badge_);
  head->addStretch(1);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addLayout(head);
  texts->addWidget(month_);
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(12);
  row->addWidget(gauge_, 0, Qt::AlignVCenter);
  row->addLayout(texts, 1);
  return header;
}

QWidget* UsageView::makeBody() {
  message_->setAlignment(Qt::AlignCenter);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setWidgetResizable(true);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_->setAccessibleName(u"Counters"_s);
  scroll_->viewport()->setAutoFillBackground(false);
  body_->addWidget(message_);
  body_->addWidget(scroll_);
  return body_;
}

QWidget* UsageView::makeFooter() {
  auto* footer = new QWidget;
  refresh_->setAccessibleName(refresh_->text());
  connect(refresh_, &QPushButton::clicked, &controller_, &UsageWindowController::refresh);
  auto* row = new QHBoxLayout(footer);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(calendar_);
  row->addWidget(makeDetailLabel(u"Resets at the start of next month"_s), 1);
  row->addWidget(refresh_);
  return footer;
}

void UsageView::focusFirst() { refresh_->setFocus(); }

void UsageView::follow() {
  const QString plan = controller_.plan();
  badge_->setPlan(plan, controller_.isPaid());
  month_->setText(plan.isEmpty() ? u"This month"_s : u"This month · %1 plan"_s.arg(plan));
  const auto state = controller_.state();
  const bool isKnown = state == UsageWindowController::State::known;
  body_->setCurrentWidget(isKnown ? static_cast<QWidget*>(scroll_) : message_);
  if (isKnown)
    followMeters();
  else
    message_->setText(messageFor(state));
}

void UsageView::followMeters() {
  const std::vector<UsageMeter> meters = controller_.meters();
  if (meters.size() != meters_.size()) {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(section_ = new SettingsSection);
    column->addStretch(1);
    meters_.clear();
    for (std::size_t i = 0; i < meters.size(); ++i) section_->addWide(meters_.emplace_back(new MeterView));
    scroll_->setWidget(content);
    content->setAutoFillBackground(false);
  }
  for (std::size_t i = 0; i < meters.size(); ++i) meters_[i]->setMeter(meters[i]);
}

void UsageView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) followTheme();
  QWidget::changeEvent(event);
}

void UsageView::followTheme() {
  const Theme& theme = themeOf(*this);
  const qreal ratio = devicePixelRatioF();
  gauge_->setPixmap(symbolPixmap(u"gauge.with.dots.needle.67percent"_s, kGauge, theme.accent, ratio));
  calendar_->setPixmap(symbolPixmap(u"calendar"_s, kSmallSymbol, theme.secondary, ratio));
  refresh_->setIcon(symbolPixmap(u"arrow.clockwise"_s, kSmallSymbol, theme.text, ratio));
}
