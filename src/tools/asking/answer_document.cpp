#include "tools/asking/answer_document.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QUrlQuery>

#include "tools/asking/fence_marks.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kMarkdown = QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub) |
                           QTextDocument::MarkdownFeatures(QTextDocument::MarkdownNoHTML);

bool isCode(const QTextBlock& block) { return block.blockFormat().hasProperty(QTextFormat::BlockCodeLanguage); }

bool isSameCode(const QTextBlock& one, const QTextBlock& other) {
  const QTextBlockFormat a = one.blockFormat();
  const QTextBlockFormat b = other.blockFormat();
  for (const int property : {int(QTextFormat::BlockCodeLanguage), int(QTextFormat::BlockCodeFence),
                             int(QTextFormat::BlockQuoteLevel), int(QTextFormat::BlockIndent)})
    if (a.property(property) != b.property(property)) return false;
  return true;
}

/// A letter's words, and who gets it; nothing else that a mail program might do with it.
QUrl letterTo(const QUrl& url) {
  QUrlQuery kept;
  for (const auto& [name, value] : QUrlQuery(url).queryItems(QUrl::FullyEncoded))
    if (name == "subject"_L1 || name == "body"_L1 || name == "cc"_L1) kept.addQueryItem(name, value);
  QUrl letter = url;
  letter.setQuery(kept.isEmpty() ? QString() : kept.toString(QUrl::FullyEncoded));
  return letter;
}

template <class Take>
void forEachFragment(const QTextDocument& document, const Take& take) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    for (auto at = block.begin(); !at.atEnd(); ++at) take(at.fragment());
}

}  // namespace

QUrl AnswerDocument::openable(const QUrl& url) {
  if (url.scheme() == "mailto"_L1 && url.path().contains(u'@')) return letterTo(url);
  const bool isWeb = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
  return isWeb && url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

void AnswerDocument::readPlain(const QString& text) {
  setPlainText(text);
  code_.clear();
  links_.clear();
}

void AnswerDocument::readMarkdown(const QString& text) {
  const QString marked = withFenceMarks(text);
  // All at once: laid out word by word, an answer full of links takes minutes.
  QTextCursor changes(this);
  changes.beginEditBlock();
  setMarkdown(marked, kMarkdown);
  replaceImages();
  if (marked.size() > text.size()) removeFenceMarks();
  takeCodeOutOfLists();
  unlinkOthers();
  changes.endEditBlock();
  findCode();
  findLinks();
}

/// A picture that is not loaded is its description.
void AnswerDocument::replaceImages() {
  const QString image(QChar::ObjectReplacementCharacter);
  for (QTextCursor at = find(image); !at.isNull(); at = find(image, at)) {
    const QString words = at.charFormat().property(QTextFormat::ImageAltText).toString();
    QTextCharFormat format;
    if (at.charFormat().isAnchor()) {
      format = at.charFormat();
      format.setObjectType(QTextFormat::NoObject);
    }
    at.insertText(words.isEmpty() ? u"[image]"_s : u"[%1]"_s.arg(words), format);
  }
}

/// Where what looked like the first line of a code block was none.
void AnswerDocument::removeFenceMarks() {
  for (QTextCursor at = find(QString(kFenceMark)); !at.isNull(); at = find(QString(kFenceMark), at))
    at.removeSelectedText();
}

/// Each of its lines would be an item of its own.
void AnswerDocument::takeCodeOutOfLists() {
  for (QTextBlock block = begin(); block.isValid(); block = block.next())
    if (QTextList* list = isCode(block) ? block.textList() : nullptr) list->remove(block);
}

void AnswerDocument::findCode() {
  code_.clear();
  for (QTextBlock block = begin(); block.isValid(); block = block.next()) {
    if (!isCode(block)) continue;
    const int number = block.blockNumber();
    const bool goesOn = !code_.empty() && code_.back().last + 1 == number && isSameCode(block.previous(), block);
    if (!goesOn) code_.push_back({number, number, block.text()});
    if (goesOn) code_.back().text += u'\n' + block.text();
    code_.back().last = number;
  }
}

/// What cannot be opened does not look as if it could.
void AnswerDocument::unlinkOthers() {
  struct Words {
    int position;
    int length;
    QTextCharFormat format;
  };
  std::vector<Words> others;
  forEachFragment(*this, [&others](const QTextFragment& fragment) {
    QTextCharFormat format = fragment.charFormat();
    if (!format.isAnchor() || !openable(QUrl(format.anchorHref())).isEmpty()) return;
    for (const int property :
         {int(QTextFormat::IsAnchor), int(QTextFormat::AnchorHref), int(QTextFormat::ForegroundBrush),
          int(QTextFormat::TextUnderlineStyle), int(QTextFormat::FontUnderline), int(QTextFormat::TextToolTip)})
      format.clearProperty(property);
    others.push_back({fragment.position(), fragment.length(), format});
  });
  QTextCursor cursor(this);
  for (const Words& words : others) {
    cursor.setPosition(words.position);
    cursor.setPosition(words.position + words.length, QTextCursor::KeepAnchor);
    cursor.setCharFormat(words.format);
  }
}

void AnswerDocument::findLinks() {
  links_.clear();
  QString before;
  forEachFragment(*this, [this, &before](const QTextFragment& fragment) {
    const QString address = fragment.charFormat().anchorHref();
    const bool goesOn =
        !links_.empty() && address == before && links_.back().position + links_.back().length == fragment.position();
    before = address;
    if (address.isEmpty()) return;
    if (!goesOn) links_.push_back({fragment.position(), 0, {}, openable(QUrl(address))});
    links_.back().length += fragment.length();
    links_.back().words += fragment.text();
  });
}
