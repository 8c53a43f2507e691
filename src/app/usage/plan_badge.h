#pragma once

#include <QWidget>

/// The plan's name in capitals on a capsule; in the accent for a paid one.
class PlanBadge final : public QWidget {
  Q_OBJECT

 public:
  explicit PlanBadge(QWidget* parent = nullptr);

  void setPlan(const QString& plan, bool isPaid);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QFont badgeFont() const;

  QString text_;
  bool isPaid_ = false;
};
