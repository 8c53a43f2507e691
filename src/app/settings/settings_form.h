#pragma once

#include <QFrame>
#include <QScrollArea>
#include <QString>

class QLabel;
class QVBoxLayout;

/// A titled group of rows on a settings page: text at the left, a control at the right, hairlines between.
class SettingsSection : public QFrame {
  Q_OBJECT

 public:
  explicit SettingsSection(QWidget* parent = nullptr);

  /// `control` becomes a child and takes `title` as its accessible name unless it has one. Empty description: none.
  void addRow(const QString& title, const QString& description, QWidget* control);
  /// A row that is all one widget.
  void addWide(QWidget* widget);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void addSeparator();

  QVBoxLayout* rows_;
};

/// One page of settings: a scrolling column of sections.
class SettingsPage : public QScrollArea {
  Q_OBJECT

 public:
  explicit SettingsPage(QWidget* parent = nullptr);

  /// Empty title: none.
  SettingsSection* addSection(const QString& title);
  void addNote(const QString& text);
  void addWidget(QWidget* widget);

 private:
  QVBoxLayout* column_;
};

/// A wrapped label in the secondary colour and the size of details.
QLabel* makeDetailLabel(const QString& text, QWidget* parent = nullptr);
/// A label in the weight of headings.
QLabel* makeHeading(const QString& text, QWidget* parent = nullptr);
