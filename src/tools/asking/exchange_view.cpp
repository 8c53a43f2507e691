#include "tools/asking/exchange_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/asking/answer_text_view.h"
#include "tools/asking/sent_images.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kBubbleInset = 10;

/// The ground that a question stands on.
class Bubble final : public QWidget {
 public:
  explicit Bubble(QWidget* content) {
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(kBubbleInset, kBubbleInset - 3, kBubbleInset, kBubbleInset - 3);
    box->addWidget(content);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeOf(*this).raised);
    painter.drawRoundedRect(rect(), Theme::kRowRadius + 2, Theme::kRowRadius + 2);
  }
};

}  // namespace

ExchangeView::ExchangeView(const QString& question, const std::vector<QImage>& thumbnails, QWidget* parent)
    : QWidget(parent),
      question_(new AnswerTextView(u"Question"_s)),
      answer_(new AnswerTextView(u"Answer"_s)),
      waiting_(makeDetailLabel(u"Thinking…"_s)),
      cut_(makeDetailLabel(u"The rest is too long to be shown here. A copy of the answer has all of it."_s)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid + 2);
  auto* row = new QHBoxLayout;
  // As wide as its words, at most three quarters of the line.
  auto* bubble = new Bubble(question_);
  const int words = QFontMetrics(question_->font()).size(0, question.left(400)).width() + 2 * kBubbleInset + 4;
  bubble->setMaximumWidth(words);
  row->addStretch(1);
  row->addWidget(bubble, 3);
  if (!thumbnails.empty()) column->addWidget(new SentImages(thumbnails), 0, Qt::AlignRight);
  column->addLayout(row);
  column->addWidget(waiting_);
  column->addWidget(answer_);
  column->addWidget(cut_);
  question_->showPlain(question);
  for (QWidget* one : std::initializer_list<QWidget*>{answer_, cut_}) one->hide();
}

void ExchangeView::showAnswer(const QString& markdown, bool isWhole) {
  waiting_->setVisible(markdown.isEmpty() && !isWhole);
  answer_->setVisible(!markdown.isEmpty());
  answer_->showMarkdown(markdown);
  cut_->setVisible(answer_->isCut());
}

QString ExchangeView::selectedText() const {
  const QString inAnswer = answer_->selectedText();
  return inAnswer.isEmpty() ? question_->selectedText() : inAnswer;
}
