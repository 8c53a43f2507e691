#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

#include <vector>

/// One hint of a panel's footer: keys, with ⌘ where a PC keyboard has Ctrl, and what they do.
struct KeyHint {
  QStringList keys;
  QString text;

  bool operator==(const KeyHint&) const = default;
};

/// The line at the foot of a panel that names its keys, set off by a hairline.
class FooterHints : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kHeight = 40;

  explicit FooterHints(std::vector<KeyHint> hints, QWidget* parent = nullptr);
  void setHints(std::vector<KeyHint> hints);
  /// A message in place of the hints, "No matching tools" say; empty brings the hints back.
  void setNotice(const QString& notice);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void describe();

  std::vector<KeyHint> hints_;
  QString notice_;
};
