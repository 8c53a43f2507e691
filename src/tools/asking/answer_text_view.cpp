#include "tools/asking/answer_text_view.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QToolButton>
#include <QWheelEvent>

#include <cmath>

#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// More than that is not shown; a copy has all of it.
constexpr qsizetype kMostShown = 50'000;
constexpr int kCodeInset = 10;
constexpr int kButtonHeight = 24;
constexpr int kLineSpacing = 120;
constexpr auto kMarkdown = QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub) |
                           QTextDocument::MarkdownFeatures(QTextDocument::MarkdownNoHTML);

/// Loads nothing, wherever it is said to be.
class InertDocument final : public QTextDocument {
 public:
  using QTextDocument::QTextDocument;

 protected:
  QVariant loadResource(int, const QUrl&) override { return {}; }
};

QString shown(const QString& text) { return text.size() <= kMostShown ? text : text.left(kMostShown) + u"\n\n…"_s; }

bool isCode(const QTextBlock& block) { return block.blockFormat().hasProperty(QTextFormat::BlockCodeLanguage); }

bool isWeb(const QUrl& url) {
  return (url.scheme() == "https"_L1 || url.scheme() == "http"_L1) && !url.host().isEmpty();
}

}  // namespace

AnswerTextView::AnswerTextView(const QString& name, QWidget* parent) : QTextBrowser(parent) {
  setDocument(new InertDocument(this));
  document()->setDocumentMargin(0);
  document()->setUndoRedoEnabled(false);
  setAccessibleName(name);
  setFrameShape(QFrame::NoFrame);
  setAcceptDrops(false);
  setFont(Theme::rowFont());
  // The keyboard stays where one types; what is marked by the pointer is copied all the same.
  setFocusPolicy(Qt::NoFocus);
  setOpenLinks(false);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setContextMenuPolicy(Qt::NoContextMenu);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  viewport()->setAutoFillBackground(false);
  connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) {
    if (isWeb(url)) Q_EMIT linkChosen(url);
  });
}

void AnswerTextView::showPlain(const QString& text) {
  markdown_.clear();
  setPlainText(shown(text));
  findCode();
  followButtons();
  fitHeight();
}

void AnswerTextView::showMarkdown(const QString& text) {
  markdown_ = text;
  QFont font = Theme::rowFont();
  font.setWeight(QFont::Normal);
  document()->setDefaultFont(font);
  document()->setMarkdown(shown(text), kMarkdown);
  replaceImages();
  findCode();
  styleBlocks();
  for (const Code& code : code_) styleCode(code);
  followButtons();
  fitHeight();
}

/// A picture that is not loaded is its description.
void AnswerTextView::replaceImages() {
  for (QTextCursor at = document()->find(QString(QChar::ObjectReplacementCharacter)); !at.isNull();
       at = document()->find(QString(QChar::ObjectReplacementCharacter), at)) {
    const QTextImageFormat image = at.charFormat().toImageFormat();
    const QString words = image.property(QTextFormat::ImageAltText).toString();
    at.insertText(words.isEmpty() ? u"[image]"_s : u"[%1]"_s.arg(words), QTextCharFormat());
  }
}

void AnswerTextView::findCode() {
  code_.clear();
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    if (!isCode(block)) continue;
    const int number = block.blockNumber();
    if (code_.empty() || code_.back().last + 1 != number)
      code_.push_back({number, number, block.text()});
    else
      code_.back() = {code_.back().first, number, code_.back().text + u'\n' + block.text()};
  }
}

void AnswerTextView::styleBlocks() {
  QTextCursor cursor(document());
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    if (isCode(block)) continue;
    QTextBlockFormat format;
    format.setLineHeight(kLineSpacing, QTextBlockFormat::ProportionalHeight);
    cursor.setPosition(block.position());
    cursor.mergeBlockFormat(format);
  }
}

/// Room for the ground and, above the first line, for the button; long lines are broken rather than cut.
void AnswerTextView::styleCode(const Code& code) {
  QTextCursor cursor(document());
  QTextCharFormat letters;
  letters.setFont(Theme::monospacedFont());
  for (int number = code.first; number <= code.last; ++number) {
    const QTextBlock block = document()->findBlockByNumber(number);
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

void AnswerTextView::followButtons() {
  while (buttons_.size() > code_.size()) {
    delete buttons_.back();
    buttons_.pop_back();
  }
  while (buttons_.size() < code_.size()) {
    auto* button = new QToolButton(this);
    const std::size_t index = buttons_.size();
    button->setText(u"Copy"_s);
    button->setFont(Theme::detailFont());
    button->setAccessibleName(u"Copy code block %1"_s.arg(index + 1));
    button->setFocusPolicy(Qt::StrongFocus);
    button->setCursor(Qt::ArrowCursor);
    connect(button, &QToolButton::clicked, this, [this, index] { Q_EMIT copyWanted(code_[index].text); });
    button->show();
    buttons_.push_back(button);
  }
}

QStringList AnswerTextView::codeBlocks() const {
  QStringList blocks;
  for (const Code& code : code_) blocks.append(code.text);
  return blocks;
}

QString AnswerTextView::selectedText() const { return textCursor().selection().toPlainText(); }

QRectF AnswerTextView::groundOf(const Code& code) const {
  const auto* layout = document()->documentLayout();
  const QRectF first = layout->blockBoundingRect(document()->findBlockByNumber(code.first));
  const QRectF last = layout->blockBoundingRect(document()->findBlockByNumber(code.last));
  const double indent = document()->findBlockByNumber(code.first).blockFormat().leftMargin() - kCodeInset;
  return {indent, first.top() - kButtonHeight, document()->textWidth() - indent,
          last.bottom() - first.top() + kButtonHeight + kCodeInset};
}

void AnswerTextView::placeButtons() {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const QRect ground = groundOf(code_[i]).toRect();
    const QSize size(buttons_[i]->sizeHint().width(), kButtonHeight - 4);
    buttons_[i]->setGeometry(QRect({ground.right() - size.width() - 4, ground.top() + 3}, size));
  }
}

void AnswerTextView::fitHeight() {
  document()->setTextWidth(viewport()->width());
  const double bottom = code_.empty() ? 0 : groundOf(code_.back()).bottom() + 1;
  height_ = static_cast<int>(std::ceil(std::max(document()->size().height(), bottom)));
  placeButtons();
  if (height_ != height()) setFixedHeight(height_);
  viewport()->update();
}

QSize AnswerTextView::sizeHint() const { return {QTextBrowser::sizeHint().width(), height_}; }

QSize AnswerTextView::minimumSizeHint() const { return {0, height_}; }

void AnswerTextView::paintEvent(QPaintEvent* event) {
  {
    const Theme& theme = themeOf(*this);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.hairline);
    painter.setBrush(theme.raised);
    for (const Code& code : code_) {
      const QRectF ground = groundOf(code).adjusted(0.5, 0.5, -0.5, -0.5);
      if (ground.intersects(event->rect())) painter.drawRoundedRect(ground, Theme::kRowRadius, Theme::kRowRadius);
    }
  }
  QTextBrowser::paintEvent(event);
}

void AnswerTextView::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  fitHeight();
}

/// The transcript scrolls, not a text in it.
void AnswerTextView::wheelEvent(QWheelEvent* event) { event->ignore(); }

void AnswerTextView::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  // Links have taken the colour of the appearance they were made in.
  if (event->type() == QEvent::PaletteChange && !markdown_.isEmpty()) showMarkdown(markdown_);
}
