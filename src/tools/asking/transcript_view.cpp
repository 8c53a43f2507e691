#include "tools/asking/transcript_view.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/accessible_roles.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "core/ui/toned_label.h"
#include "tools/asking/answer_text_view.h"
#include "tools/asking/exchange_view.h"
#include "tools/asking/link_stop.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kSide = 2 * Theme::kGrid;
/// An arriving answer is drawn at most twenty times a second, and never for more than an eighth of the time.
constexpr auto kGrowth = 50ms;
/// Beside the stretch below.
constexpr int kAllRoom = 100;
constexpr int kShareOfTime = 8;
constexpr auto kRarest = 2000ms;

}  // namespace

TranscriptView::TranscriptView(AskModel& model, const QString& emptyText, QWidget* parent)
    : QScrollArea(parent),
      model_(model),
      column_(nullptr),
      error_(new TonedLabel(&Theme::failure)),
      empty_(makeDetailLabel(emptyText)) {
  setAccessibleRole(*this, QAccessible::Pane);
  setAccessibleName(u"Transcript"_s);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  auto* content = new QWidget;
  column_ = new QVBoxLayout(content);
  column_->setContentsMargins(kSide, Theme::kGrid, kSide, Theme::kGrid);
  column_->setSpacing(2 * Theme::kGrid);
  empty_->setAlignment(Qt::AlignCenter);
  error_->setWordWrap(true);
  error_->setTextFormat(Qt::PlainText);
  error_->setFont(Theme::detailFont());
  column_->addWidget(empty_, kAllRoom);
  column_->addWidget(error_);
  column_->addStretch(1);
  setWidget(content);
  for (QWidget* one : {content, viewport()}) one->setAutoFillBackground(false);
  growth_.setSingleShot(true);
  growth_.setInterval(kGrowth);
  connect(&growth_, &QTimer::timeout, this, &TranscriptView::showPartial);
  connect(&model_, &AskModel::changed, this, &TranscriptView::follow);
  connect(&model_, &AskModel::answerGrew, this, &TranscriptView::grow);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &TranscriptView::keepEndInSight);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { isAtEnd_ = value >= verticalScrollBar()->maximum(); });
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { showStop(now); });
  follow();
}

void TranscriptView::follow() {
  followExchanges();
  followOpen();
  const bool hasError = model_.errorMessage().has_value();
  // What went wrong is seen, wherever the user is reading.
  if (hasError && error_->isHidden()) {
    isAtEnd_ = true;
    top_.clear();
  }
  error_->setText(model_.errorMessage().value_or(QString()));
  error_->setVisible(hasError);
  empty_->setVisible(exchanges_.empty() && !open_ && !hasError);
}

/// The transcript only grows, or is emptied.
void TranscriptView::followExchanges() {
  while (exchanges_.size() > model_.exchanges().size()) {
    delete exchanges_.back();
    exchanges_.pop_back();
  }
  for (std::size_t i = exchanges_.size(); i < model_.exchanges().size(); ++i) {
    const AskExchange& exchange = model_.exchanges()[i];
    if (open_ && open_->answer().isHidden()) top_ = open_;
    ExchangeView* view = open_ ? std::exchange(open_, nullptr) : add(exchange.question, exchange.thumbnails);
    exchanges_.push_back(view);
    view->showAnswer(exchange.answer, true);
  }
}

void TranscriptView::followOpen() {
  const bool isBroken = !model_.pending() && model_.brokenOff();
  const bool isOpen = model_.pending() || isBroken;
  const bool wasBroken = isBroken_;
  const bool isAnother = wasBroken && !isBroken;
  if (!isOpen || isAnother) delete std::exchange(open_, nullptr);
  isBroken_ = isBroken;
  if (!isOpen) return;
  const bool isNew = !open_;
  if (isNew) {
    isAtEnd_ = true;
    top_.clear();
    open_ = model_.pending() ? add(*model_.pending(), model_.pendingThumbnails())
                             : add(model_.brokenOff()->question, model_.brokenOff()->thumbnails);
  }
  if (isNew || isBroken != wasBroken) showPartial();
}

void TranscriptView::grow() {
  if (!growth_.isActive()) growth_.start();
}

void TranscriptView::showPartial() {
  if (!open_) return;
  QElapsedTimer cost;
  cost.start();
  open_->showAnswer(isBroken_ ? model_.brokenOff()->answer : model_.partialAnswer(), isBroken_);
  const std::chrono::milliseconds pause(cost.elapsed() * kShareOfTime);
  growth_.setInterval(std::clamp<std::chrono::milliseconds>(pause, kGrowth, kRarest));
}

ExchangeView* TranscriptView::add(const QString& question, const std::vector<QImage>& thumbnails) {
  auto* view = new ExchangeView(question, thumbnails);
  column_->insertWidget(column_->count() - 2, view);
  for (AnswerTextView* text : {&view->question(), &view->answer()}) {
    connect(text, &AnswerTextView::copyWanted, this, &TranscriptView::copyWanted);
    connect(text, &AnswerTextView::linkChosen, this, &TranscriptView::linkChosen);
    connect(text, &AnswerTextView::menuWanted, this,
            [this, text](const QPoint& place, const QUrl& link) { Q_EMIT menuWanted(text, place, link); });
    connect(text, &QTextEdit::selectionChanged, this, [this, text] {
      if (text->textCursor().hasSelection()) clearOtherSelections(text);
    });
  }
  return view;
}

std::vector<QWidget*> TranscriptView::stops() const {
  std::vector<QWidget*> all;
  const auto append = [&all](ExchangeView& exchange) {
    const auto stops = exchange.answer().stops();
    all.insert(all.end(), stops.begin(), stops.end());
  };
  for (ExchangeView* exchange : exchanges_) append(*exchange);
  if (open_) append(*open_);
  return all;
}

void TranscriptView::showStop(QWidget* stop) {
  if (stop && widget()->isAncestorOf(stop)) ensureWidgetVisible(stop);
}

void TranscriptView::clearOtherSelections(const AnswerTextView* chosen) {
  for (auto* text : findChildren<AnswerTextView*>()) {
    if (text == chosen || !text->textCursor().hasSelection()) continue;
    QTextCursor cursor = text->textCursor();
    cursor.clearSelection();
    text->setTextCursor(cursor);
  }
}

QString TranscriptView::selectedText() const {
  for (const auto* text : findChildren<AnswerTextView*>())
    if (const QString selected = text->selectedText(); !selected.isEmpty()) return selected;
  return {};
}

AnswerTextView* TranscriptView::textAtHand() const {
  const auto texts = findChildren<AnswerTextView*>();
  const auto isMarked = [](const AnswerTextView* text) { return !text->selectedText().isEmpty(); };
  if (const auto marked = std::ranges::find_if(texts, isMarked); marked != texts.end()) return *marked;
  for (AnswerTextView* text : texts)
    if (text->isAncestorOf(window()->focusWidget())) return text;
  if (open_ && !open_->answer().isHidden()) return &open_->answer();
  return exchanges_.empty() ? nullptr : &exchanges_.back()->answer();
}

bool TranscriptView::askForMenu() {
  AnswerTextView* text = textAtHand();
  if (!text) return false;
  const auto* stop = qobject_cast<LinkStop*>(window()->focusWidget());
  const bool isAtLink = stop && text->isAncestorOf(stop);
  // Beside what the user looks at, and not over all of it.
  const QWidget* at = isAtLink ? static_cast<const QWidget*>(stop) : text;
  const QRect seen = at->visibleRegion().boundingRect();
  const QPoint corner = isAtLink ? seen.bottomLeft() : seen.topLeft() + QPoint(2, 2) * Theme::kGrid;
  Q_EMIT menuWanted(text, at->mapToGlobal(corner), isAtLink ? stop->url() : QUrl());
  return true;
}

void TranscriptView::scroll(double pages) {
  QScrollBar& bar = *verticalScrollBar();
  bar.setValue(bar.value() + static_cast<int>(pages * bar.pageStep()));
}

void TranscriptView::keepEndInSight() {
  QScrollBar& bar = *verticalScrollBar();
  if (isAtEnd_) bar.setValue(top_ ? std::min(bar.maximum(), top_->y() - Theme::kGrid) : bar.maximum());
}
