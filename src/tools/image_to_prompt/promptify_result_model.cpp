#include "tools/image_to_prompt/promptify_result_model.h"

#include <algorithm>
#include <cmath>

void PromptifyResultModel::set(const QString& prompt, const QImage& sourceImage, const QString& styleLabel,
                               double textHeight) {
  prompt_ = prompt;
  sourceImage_ = sourceImage;
  styleLabel_ = styleLabel;
  bodyHeight_ = std::clamp(std::ceil(textHeight) + 2 * promptcard::kTextInset, promptcard::kMinBodyHeight,
                           promptcard::kMaxBodyHeight);
  Q_EMIT changed();
}

void PromptifyResultModel::setCopied(bool copied) {
  if (copied == copied_) return;
  copied_ = copied;
  Q_EMIT changed();
}
