#include "tools/asking/answer_text_view.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextTable>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

#include "core/ui/theme.h"
#include "tools/asking/link_stop.h"

using namespace Qt::StringLiterals;

namespace {

/// More than that takes too long to lay out again and again.
constexpr qsizetype kMostShown = 50'000;
/// Of links, beyond which the pointer is needed: what has more is no answer to a question.
constexpr std::size_t kMostLinks = 200;
constexpr int kCodeInset = 10;
constexpr int kButtonHeight = 24;
constexpr int kLineSpacing = 120;
constexpr int kIndent = 24;
constexpr int kCellPadding = 4;
constexpr int kQuoteBar = 3;
constexpr int kQuoteInset = 8;

/// The later of them go.
template <class Stop>
void shorten(std::vector<Stop*>& stops, std::size_t size) {
  for (; stops.size() > size; stops.pop_back()) delete stops.back();
}

/// At most as deep as there is room for.
int quoteLevel(const QTextBlock& block) {
  return std::min(block.blockFormat().intProperty(QTextFormat::BlockQuoteLevel), 5);
}

}  // namespace

AnswerTextView::AnswerTextView(const QString& name, QWidget* parent)
    : QTextBrowser(parent), text_(new AnswerDocument(this)) {
  setDocument(text_);
  text_->setDocumentMargin(0);
  text_->setIndentWidth(kIndent);
  text_->setUndoRedoEnabled(false);
  setAccessibleName(name);
  setFrameShape(QFrame::NoFrame);
  setAcceptDrops(false);
  setFont(Theme::rowFont());
  setFocusPolicy(Qt::NoFocus);
  setOpenLinks(false);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  viewport()->setAutoFillBackground(false);
  connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) {
    if (const QUrl address = AnswerDocument::openable(url); !address.isEmpty()) Q_EMIT linkChosen(address);
  });
  connect(this, &QTextBrowser::highlighted, viewport(),
          [this](const QUrl& url) { viewport()->setToolTip(url.toDisplayString()); });
}

QString AnswerTextView::cut(const QString& text) {
  isCut_ = text.size() > kMostShown;
  return isCut_ ? text.left(kMostShown) : text;
}

void AnswerTextView::showPlain(const QString& text) {
  source_ = text;
  isMarkdown_ = false;
  text_->readPlain(cut(text));
  finish();
}

/// What the user has marked stays so while an answer grows.
void AnswerTextView::showMarkdown(const QString& text) {
  const int anchor = textCursor().anchor();
  const int position = textCursor().position();
  const QString marked = selectedText();
  source_ = text;
  isMarkdown_ = true;
  QFont font = Theme::rowFont();
  font.setWeight(QFont::Normal);
  text_->setDefaultFont(font);
  QTextCursor changes(text_);
  changes.beginEditBlock();
  text_->readMarkdown(cut(text));
  styleBlocks();
  for (const AnswerDocument::Code& code : text_->code()) styleCode(code);
  changes.endEditBlock();
  styleTables();
  finish();
  if (marked.isEmpty() || std::max(anchor, position) >= text_->characterCount()) return;
  QTextCursor cursor(text_);
  cursor.setPosition(anchor);
  cursor.setPosition(position, QTextCursor::KeepAnchor);
  if (cursor.selection().toPlainText() == marked) setTextCursor(cursor);
}

void AnswerTextView::finish() {
  viewport()->setToolTip({});
  followStops();
  fitHeight();
}

void AnswerTextView::styleBlocks() {
  QTextCursor cursor(text_);
  for (QTextBlock block = text_->begin(); block.isValid(); block = block.next()) {
    QTextBlockFormat format;
    if (!block.blockFormat().hasProperty(QTextFormat::BlockCodeLanguage))
      format.setLineHeight(kLineSpacing, QTextBlockFormat::ProportionalHeight);
    if (const int quotes = quoteLevel(block); quotes > 0) {
      format.setLeftMargin(quotes * kIndent);
      format.setRightMargin(0);
    }
    cursor.setPosition(block.position());
    cursor.mergeBlockFormat(format);
  }
}

/// Tables are known only after the change that brought them.
void AnswerTextView::styleTables() {
  QTextCursor changes(text_);
  changes.beginEditBlock();
  for (QTextFrame* frame : text_->rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (!table) continue;
    QTextTableFormat format = table->format();
    format.setBorderCollapse(true);
    format.setBorder(1);
    format.setBorderBrush(themeOf(*this).edge);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setCellPadding(kCellPadding);
    format.setCellSpacing(0);
    table->setFormat(format);
  }
  changes.endEditBlock();
}

/// Room for the ground and, above the first line, for the button; long lines are broken rather than cut.
void AnswerTextView::styleCode(const AnswerDocument::Code& code) {
  QTextCursor cursor(text_);
  QTextCharFormat letters;
  letters.setFont(Theme::monospacedFont());
  for (int number = code.first; number <= code.last; ++number) {
    const QTextBlock block = text_->findBlockByNumber(number);
    QTextBlockFormat format;
    format.setNonBreakableLines(false);
    format.setLeftMargin(block.blockFormat().leftMargin() + kCodeInset);
    format.setRightMargin(kCodeInset);
    format.setTopMargin(number == code.first ? kButtonHeight + kCodeInset : 0);
    format.setBottomMargin(number == code.last ? 2 * kCodeInset : 0);
    cursor.setPosition(block.position());
    cursor.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
    cursor.mergeBlockFormat(format);
    cursor.mergeCharFormat(letters);
    cursor.mergeBlockCharFormat(letters);
  }
}

/// Those that stay keep the keyboard while an answer grows.
void AnswerTextView::followStops() {
  const bool endsInCode = !text_->code().empty() && text_->code().back().last + 1 == text_->blockCount();
  // Half a block is of no use elsewhere.
  const std::size_t whole = text_->code().size() - (isCut_ && endsInCode ? 1 : 0);
  shorten(buttons_, whole);
  while (buttons_.size() < whole) buttons_.push_back(addButton(buttons_.size()));
  const std::size_t reachable = std::min(text_->links().size(), kMostLinks);
  shorten(links_, reachable);
  while (links_.size() < reachable) links_.push_back(addLink());
  for (std::size_t i = 0; i < reachable; ++i) links_[i]->setLink(text_->links()[i].words, text_->links()[i].url);
}

QToolButton* AnswerTextView::addButton(std::size_t index) {
  auto* button = new QToolButton(this);
  button->setText(u"Copy"_s);
  button->setFont(Theme::detailFont());
  button->setAccessibleName(u"Copy code block %1"_s.arg(index + 1));
  button->setFocusPolicy(Qt::TabFocus);
  button->setCursor(Qt::ArrowCursor);
  connect(button, &QToolButton::clicked, this, [this, index] { Q_EMIT copyWanted(text_->code()[index].text); });
  button->show();
  return button;
}

LinkStop* AnswerTextView::addLink() {
  auto* stop = new LinkStop(this);
  connect(stop, &LinkStop::clicked, this, [this, stop] { Q_EMIT linkChosen(stop->url()); });
  stop->show();
  return stop;
}

std::vector<QWidget*> AnswerTextView::stops() const {
  std::vector<QWidget*> all;
  std::size_t link = 0;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const int start = text_->findBlockByNumber(text_->code()[i].first).position();
    for (; link < links_.size() && text_->links()[link].position < start; ++link) all.push_back(links_[link]);
    all.push_back(buttons_[i]);
  }
  for (; link < links_.size(); ++link) all.push_back(links_[link]);
  return all;
}

QStringList AnswerTextView::codeBlocks() const {
  QStringList blocks;
  for (const AnswerDocument::Code& code : text_->code()) blocks.append(code.text);
  return blocks;
}

QString AnswerTextView::selectedText() const { return textCursor().selection().toPlainText(); }

QRectF AnswerTextView::groundOf(const AnswerDocument::Code& code) const {
  const auto* layout = text_->documentLayout();
  const QTextBlock begin = text_->findBlockByNumber(code.first);
  const QRectF first = layout->blockBoundingRect(begin);
  const QRectF last = layout->blockBoundingRect(text_->findBlockByNumber(code.last));
  const QTextBlockFormat format = begin.blockFormat();
  const double left = format.leftMargin() - kCodeInset + format.indent() * text_->indentWidth();
  return {left, first.top() - kButtonHeight, text_->textWidth() - left,
          last.bottom() - first.top() + kButtonHeight + kCodeInset};
}

/// Words that go over several lines have the room of all of these.
QRect AnswerTextView::placeOf(const AnswerDocument::Link& link) const {
  QTextCursor cursor(text_);
  cursor.setPosition(link.position);
  const QRect begin = cursorRect(cursor);
  cursor.setPosition(link.position + link.length);
  const QRect end = cursorRect(cursor);
  QRect place = begin.united(end);
  if (begin.top() != end.top()) {
    place.setLeft(0);
    place.setRight(viewport()->width() - 1);
  }
  return place.adjusted(-2, 0, 2, 1) & viewport()->rect();
}

void AnswerTextView::placeStops() {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const QRect ground = groundOf(text_->code()[i]).toRect();
    const QSize size(buttons_[i]->sizeHint().width(), kButtonHeight - 4);
    buttons_[i]->setGeometry(QRect({ground.right() - size.width() - 4, ground.top() + 3}, size));
  }
  for (std::size_t i = 0; i < links_.size(); ++i) links_[i]->setGeometry(placeOf(text_->links()[i]));
}

void AnswerTextView::fitHeight() {
  text_->setTextWidth(viewport()->width());
  const double bottom = text_->code().empty() ? 0 : groundOf(text_->code().back()).bottom() + 1;
  height_ = static_cast<int>(std::ceil(std::max(text_->size().height(), bottom)));
  placeStops();
  if (height_ != height()) setFixedHeight(height_);
  viewport()->update();
}

QSize AnswerTextView::sizeHint() const { return {QTextBrowser::sizeHint().width(), height_}; }

QSize AnswerTextView::minimumSizeHint() const { return {0, height_}; }

void AnswerTextView::paintEvent(QPaintEvent* event) {
  paintGrounds(event->rect());
  QTextBrowser::paintEvent(event);
}

void AnswerTextView::paintGrounds(const QRect& exposed) {
  const Theme& theme = themeOf(*this);
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(theme.hairline);
  painter.setBrush(theme.raised);
  for (const AnswerDocument::Code& code : text_->code()) {
    const QRectF ground = groundOf(code).adjusted(0.5, 0.5, -0.5, -0.5);
    if (ground.intersects(exposed)) painter.drawRoundedRect(ground, Theme::kRowRadius, Theme::kRowRadius);
  }
  for (QTextBlock block = text_->begin(); block.isValid(); block = block.next()) {
    const QRectF lines = text_->documentLayout()->blockBoundingRect(block);
    for (int level = 0; level < quoteLevel(block); ++level)
      painter.fillRect(QRectF(level * kIndent + kQuoteInset, lines.top(), kQuoteBar, lines.height()), theme.edge);
  }
}

void AnswerTextView::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  fitHeight();
}

/// The transcript scrolls, not a text in it.
void AnswerTextView::wheelEvent(QWheelEvent* event) { event->ignore(); }

void AnswerTextView::contextMenuEvent(QContextMenuEvent* event) {
  Q_EMIT menuWanted(event->globalPos(), AnswerDocument::openable(QUrl(anchorAt(event->pos()))));
}

void AnswerTextView::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  // Links have taken the colour of the appearance they were made in.
  if (event->type() == QEvent::PaletteChange && isMarkdown_) showMarkdown(QString(source_));
}
