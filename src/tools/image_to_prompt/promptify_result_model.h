#pragma once

#include <QImage>
#include <QObject>

/// Sizes of the result card, in logical pixels.
namespace promptcard {
inline constexpr int kWidth = 520;
inline constexpr int kTextInset = 16;
inline constexpr int kTextWidth = kWidth - 2 * kTextInset;
inline constexpr double kMinBodyHeight = 72;
inline constexpr double kMaxBodyHeight = 380;
/// The card without its text.
inline constexpr int kHeaderHeight = 80;
inline constexpr int kFooterHeight = 60;
inline constexpr int kAroundBody = kHeaderHeight + kFooterHeight + 2;
}  // namespace promptcard

/// What the result card shows. Main thread only.
class PromptifyResultModel final : public QObject {
  Q_OBJECT

 public:
  const QString& prompt() const { return prompt_; }
  /// Null when there is none.
  const QImage& sourceImage() const { return sourceImage_; }
  const QString& styleLabel() const { return styleLabel_; }
  double bodyHeight() const { return bodyHeight_; }
  bool copied() const { return copied_; }

  /// `textHeight`: of the prompt, in logical pixels, `promptcard::kTextWidth` wide.
  void set(const QString& prompt, const QImage& sourceImage, const QString& styleLabel, double textHeight);
  void setCopied(bool copied);

 Q_SIGNALS:
  void changed();

 private:
  QString prompt_;
  QImage sourceImage_;
  QString styleLabel_;
  double bodyHeight_ = promptcard::kMinBodyHeight;
  bool copied_ = false;
};
