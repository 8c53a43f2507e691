#pragma once

#include <QTextBrowser>

#include <vector>

#include "tools/asking/answer_document.h"

class LinkStop;
class QToolButton;

/// A text of a conversation, as high as what it shows: an answer in Markdown, whose code blocks can be copied, or plain
/// words. Its links are only handed on. The keyboard stays where one types; it stops at the links and at the code
/// blocks alone, and what is marked by the pointer is copied all the same.
class AnswerTextView : public QTextBrowser {
  Q_OBJECT

 public:
  explicit AnswerTextView(const QString& name, QWidget* parent = nullptr);

  void showMarkdown(const QString& text);
  void showPlain(const QString& text);
  /// Whether only the beginning is shown; a copy has all of it.
  bool isCut() const { return isCut_; }
  /// All of what is shown, as it was written.
  const QString& source() const { return source_; }
  bool isMarkdown() const { return isMarkdown_; }
  /// What the user has marked; empty: nothing.
  QString selectedText() const;
  /// The code blocks, from the first to the last.
  QStringList codeBlocks() const;
  /// Where the keyboard stops, in reading order.
  std::vector<QWidget*> stops() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void copyWanted(const QString& code);
  /// An address that may be opened.
  void linkChosen(const QUrl& url);
  /// `place` is global; `link`: the address there, if it may be opened.
  void menuWanted(const QPoint& place, const QUrl& link);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;
  /// Past its stops to whatever comes next, and not round among its links, as the browser would go.
  // NOLINTNEXTLINE(bugprone-parent-virtual-call)
  bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }

 private:
  /// As much of it as is shown.
  QString cut(const QString& text);
  void finish();
  void styleBlocks();
  void styleTables();
  void styleCode(const AnswerDocument::Code& code);
  void followStops();
  QToolButton* addButton(std::size_t index);
  LinkStop* addLink();
  void placeStops();
  QRectF groundOf(const AnswerDocument::Code& code) const;
  QRect placeOf(const AnswerDocument::Link& link) const;
  void paintGrounds(const QRect& exposed);
  void fitHeight();

  AnswerDocument* text_;
  /// Of the first code blocks, and of the first links.
  std::vector<QToolButton*> buttons_;
  std::vector<LinkStop*> links_;
  QString source_;
  bool isMarkdown_ = false;
  bool isCut_ = false;
  int height_ = 0;
};
