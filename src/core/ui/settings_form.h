#pragma once

#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <QString>
#include <QStringList>

#include <span>

class QVBoxLayout;

/// The line below a row's text that says what stands in the way; hidden while there is nothing to say.
class RowRemark : public QLabel {
  Q_OBJECT

 public:
  explicit RowRemark(QWidget* parent);

  void showHint(const QString& text) { showText(text, false); }
  void showError(const QString& text) { showText(text, true); }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void showText(const QString& text, bool isError);
  void applyColor();

  bool isError_ = false;
};

/// A titled group of rows on a settings page: text at the left, a control at the right, hairlines between.
class SettingsSection : public QFrame {
  Q_OBJECT

 public:
  explicit SettingsSection(QWidget* parent = nullptr);

  /// `control` becomes a child and takes `title` as its accessible name unless it has one. Empty description: none.
  /// Answers the row's remark, which is empty.
  RowRemark* addRow(const QString& title, const QString& description, QWidget* control);
  /// A row that is all one widget.
  void addWide(QWidget* widget);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void addSeparator();

  QVBoxLayout* rows_;
};

/// One page of settings: a scrolling column of sections, which follows the keyboard's focus.
class SettingsPage : public QScrollArea {
  Q_OBJECT

 public:
  explicit SettingsPage(QWidget* parent = nullptr);

  /// Empty title: none.
  SettingsSection* addSection(const QString& title);
  void addHeading(const QString& title);
  void addNote(const QString& text);
  void addWidget(QWidget* widget);
  void scrollToTop();

 private:
  void follow(QWidget* focused);

  QVBoxLayout* column_;
};

/// A wrapped label in the secondary colour and the size of details.
QLabel* makeDetailLabel(const QString& text, QWidget* parent = nullptr);
/// Adds the heading "How it works" and below it what is to be known of a tool, a paragraph each.
void addHowItWorks(QVBoxLayout& column, const QStringList& notes);
/// A step of what a tool does, with its symbol.
struct HowItWorksStep {
  const char16_t* symbol;
  const char16_t* text;
};
void addHowItWorks(QVBoxLayout& column, std::span<const HowItWorksStep> steps);
/// A label in the weight of headings.
QLabel* makeHeading(const QString& text, QWidget* parent = nullptr);
