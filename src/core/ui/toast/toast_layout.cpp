#include "core/ui/toast/toast_layout.h"

#include <QFontMetrics>

#include <algorithm>
#include <cmath>

#include "core/ui/key_caps.h"
#include "core/ui/theme.h"
#include "core/ui/wrapped_text.h"

namespace {

constexpr int kMaximumWidth = 480;
constexpr int kMinimumWidth = 220;
constexpr int kSide = 14;
constexpr int kGap = 12;
constexpr int kTrailing = 18;
constexpr int kTitleLines = 2;
constexpr int kMostDetailLines = 8;
constexpr int kKeysGap = 8;

int leadingSize(const ToastContent& content) {
  if (!content.thumbnail.isNull()) return content.tall ? 56 : 44;
  const bool hasIcon = content.showsSpinner || !content.icon.isEmpty() || !content.assetIcon.isEmpty();
  if (!hasIcon) return 0;
  return content.tall ? 32 : 24;
}

int widest(const QStringList& lines, const QFont& font) {
  const QFontMetrics metrics(font);
  int width = 0;
  for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line) + 1);
  return width;
}

int keysWidth(const ToastContent& content) {
  if (content.keys.isEmpty()) return 0;
  const int caps = static_cast<int>(std::ceil(KeyCapRow{content.keys}.size().width()));
  if (content.keysPrefix.isEmpty()) return caps;
  return QFontMetrics(Theme::detailFont()).horizontalAdvance(content.keysPrefix) + 6 + caps;
}

/// Stacks the text parts below each other from (x, 0), `width` wide; answers the height of the stack.
int stack(ToastLayout& layout, const ToastContent& content, int x, int width) {
  int y = static_cast<int>(layout.titleLines.size()) * QFontMetrics(Theme::rowFont()).height();
  layout.title = QRect(x, 0, width, y);
  if (!layout.detailLines.isEmpty()) {
    const int height =
        static_cast<int>(layout.detailLines.size()) * QFontMetrics(toastDetailFont(content)).lineSpacing();
    layout.detail = QRect(x, y + 2, width, height);
    y += 2 + height;
  }
  if (!content.keys.isEmpty()) {
    layout.keys = QRect(x, y + kKeysGap, width, KeyCapRow::kHeight);
    y += kKeysGap + KeyCapRow::kHeight;
  }
  return y;
}

}  // namespace

QFont toastDetailFont(const ToastContent& content) {
  return content.detailMonospaced ? Theme::monospacedFont() : Theme::detailFont();
}

ToastLayout ToastLayout::of(const ToastContent& content) {
  const int leading = leadingSize(content);
  const int textLeft = kSide + (leading > 0 ? leading + kGap : 0);
  const int chrome = textLeft + kGap + kTrailing + kSide;
  const int mostText = kMaximumWidth - chrome;

  ToastLayout layout;
  layout.titleLines = wrappedLines(content.title, Theme::rowFont(), mostText, kTitleLines);
  const int limit = std::clamp(content.detailLineLimit, 1, kMostDetailLines);
  const QFont detailFont = toastDetailFont(content);
  const int detailWidth = balancedWidth(content.detail, detailFont, mostText, limit);
  layout.detailLines = wrappedLines(content.detail, detailFont, detailWidth, limit);
  const int text = std::max(
      {widest(layout.titleLines, Theme::rowFont()), widest(layout.detailLines, detailFont), keysWidth(content)});
  const int width = std::clamp(chrome + text, kMinimumWidth, kMaximumWidth);

  const int textHeight = stack(layout, content, textLeft, width - chrome);
  const int inner = std::max(textHeight, leading);
  const int pad = content.tall ? 18 : 12;
  layout.card = QSize(width, inner + 2 * pad);
  const int textTop = pad + (inner - textHeight) / 2;
  for (QRect* part : {&layout.title, &layout.detail, &layout.keys})
    if (!part->isNull()) part->translate(0, textTop);
  if (leading > 0) {
    // In the middle of one or two lines, beside the first of more.
    const bool isLow = content.tall || inner <= leading + 12;
    const int middle = isLow ? layout.card.height() / 2 : textTop + QFontMetrics(Theme::rowFont()).height() / 2;
    layout.leading = QRect(kSide, std::max(kSide / 2, middle - leading / 2), leading, leading);
  }
  layout.trailing = QRect(width - kSide - kTrailing, (layout.card.height() - kTrailing) / 2, kTrailing, kTrailing);
  return layout;
}
