#pragma once

#include <QTextBrowser>

#include <vector>

class QToolButton;

/// A text of a conversation, as high as what it shows: an answer in Markdown, whose code blocks can be copied, or plain
/// words. What an answer names is never loaded, its HTML is text like any other, and its links are only handed on.
class AnswerTextView : public QTextBrowser {
  Q_OBJECT

 public:
  explicit AnswerTextView(const QString& name, QWidget* parent = nullptr);

  void showMarkdown(const QString& text);
  void showPlain(const QString& text);
  /// What the user has marked; empty: nothing.
  QString selectedText() const;
  /// The code blocks, from the first to the last.
  QStringList codeBlocks() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void copyWanted(const QString& code);
  /// A web address.
  void linkChosen(const QUrl& url);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void changeEvent(QEvent* event) override;
  /// Past its buttons to whatever comes next, and not round among its links.
  bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }

 private:
  /// Consecutive blocks of the document.
  struct Code {
    int first = 0;
    int last = 0;
    QString text;
  };

  void findCode();
  void styleBlocks();
  void styleCode(const Code& code);
  void replaceImages();
  void followButtons();
  void placeButtons();
  QRectF groundOf(const Code& code) const;
  void fitHeight();

  std::vector<Code> code_;
  std::vector<QToolButton*> buttons_;
  QString markdown_;
  int height_ = 0;
};
