#pragma once

#include <QUuid>
#include <QWidget>

#include "tools/inject_md/inject_md_settings.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTimer;

/// Edits one file's template. What is typed is taken over after a short pause, and at the latest when the editor is
/// left.
class MDDocumentEditor final : public QWidget {
  Q_OBJECT

 public:
  explicit MDDocumentEditor(InjectMDStore& store, QWidget* parent = nullptr);
  ~MDDocumentEditor() override;

  void edit(const QUuid& id);
  void takeFocus();
  const QUuid& edited() const { return id_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void follow();
  void commit();
  void reset();

  InjectMDStore& store_;
  QUuid id_;
  QLabel* title_;
  QPlainTextEdit* text_;
  QPushButton* reset_;
  /// Runs while something is typed that is not taken over yet.
  QTimer* pause_;
};
