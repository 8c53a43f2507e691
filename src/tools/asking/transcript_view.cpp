#include "tools/asking/transcript_view.h"

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
  follow();
}

void TranscriptView::follow() {
  followExchanges();
  followOpen();
  const bool hasError = model_.errorMessage().has_value();
  // What went wrong is seen, wherever the user is reading.
  if (hasError && error_->isHidden()) isAtEnd_ = true;
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
    ExchangeView* view = open_ ? std::exchange(open_, nullptr) : add(exchange.question);
    view->showAnswer(exchange.answer, true);
    exchanges_.push_back(view);
  }
}

void TranscriptView::followOpen() {
  const bool isBroken = !model_.pending() && model_.brokenOff();
  const bool isOpen = model_.pending() || isBroken;
  const bool isAnother = isBroken_ && !isBroken;
  if (!isOpen || isAnother) delete std::exchange(open_, nullptr);
  isBroken_ = isBroken;
  if (!isOpen) return;
  if (!open_) {
    isAtEnd_ = true;
    open_ = add(model_.pending() ? *model_.pending() : model_.brokenOff()->question);
  }
  showPartial();
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

ExchangeView* TranscriptView::add(const QString& question) {
  auto* view = new ExchangeView(question);
  column_->insertWidget(column_->count() - 2, view);
  for (AnswerTextView* text : {&view->question(), &view->answer()}) {
    connect(text, &AnswerTextView::copyWanted, this, &TranscriptView::copyWanted);
    connect(text, &AnswerTextView::linkChosen, this, &TranscriptView::linkChosen);
    connect(text, &QTextEdit::selectionChanged, this, [this, text] {
      if (text->textCursor().hasSelection()) clearOtherSelections(text);
    });
  }
  return view;
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

void TranscriptView::scroll(double pages) {
  QScrollBar& bar = *verticalScrollBar();
  bar.setValue(bar.value() + static_cast<int>(pages * bar.pageStep()));
}

void TranscriptView::keepEndInSight() {
  if (isAtEnd_) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}
