#pragma once

#include <QWidget>

/// The launcher's head in arrange mode: "Arrange your grid" and a line on how, or the query that narrows the grid.
class ArrangeTitle : public QWidget {
  Q_OBJECT

 public:
  explicit ArrangeTitle(QWidget* parent);

  void setQuery(const QString& query);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString detail_;
};
