#pragma once

#include <QWidget>

/// Shows a palette's query with a caret behind it, or the placeholder. It paints what the model holds and never takes
/// the focus: the panel's keys fill the query. Read by screen readers as an edit field.
class SearchField : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kHeight = 56;

  explicit SearchField(const QString& placeholder, QWidget* parent = nullptr);

  const QString& text() const { return text_; }
  void setText(const QString& text);
  /// What an input method is composing at the caret, underlined.
  void setPreedit(const QString& preedit);
  /// Where the caret stands, so that an input method shows its candidates there.
  QRect caretRect() const;
  void setPlaceholder(const QString& placeholder);
  /// The leading symbol, a magnifying glass unless set.
  void setSymbol(const QString& symbol);
  /// Small text at the trailing edge, "3 of 12" say.
  void setTrailingText(const QString& text);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QRect textArea() const;
  /// The end of text and preedit as far as they fit, for the end is what is being typed.
  QString shownText() const;

  QString text_;
  QString preedit_;
  QString placeholder_;
  QString symbol_;
  QString trailing_;
};
