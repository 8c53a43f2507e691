#pragma once

#include <QWidget>

/// One dot a page; hidden when there is only one.
class PageDots : public QWidget {
  Q_OBJECT

 public:
  explicit PageDots(QWidget* parent);

  void setPages(int current, int count);

 Q_SIGNALS:
  void pageChosen(int page);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  int current_ = 0;
  int count_ = 0;
};
