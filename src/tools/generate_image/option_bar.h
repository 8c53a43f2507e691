#pragma once

#include <QPushButton>
#include <QWidget>

#include <vector>

/// One choice of several, each to be seen at once: no list opens that would be a window above the panel.
class OptionBar final : public QWidget {
  Q_OBJECT

 public:
  /// `name`: what is chosen, for screen readers and in the tip with `keys`.
  OptionBar(const QString& name, const QString& keys, const QStringList& labels, QWidget* parent = nullptr);

  void setCurrent(int index);

 Q_SIGNALS:
  void chosen(int index);

 private:
  std::vector<QPushButton*> buttons_;
};
