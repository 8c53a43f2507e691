#include "tools/image_to_prompt/prompt_mode.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kModes = {
    PromptModeInfo{PromptMode::ui, "ui"_L1, "UI Focused"_L1, "rectangle.3.group"_L1,
                   "A prompt to rebuild the screen in code"_L1},
    PromptModeInfo{PromptMode::general, "general"_L1, "General Purpose"_L1, "text.alignleft"_L1,
                   "A balanced, faithful description"_L1},
    PromptModeInfo{PromptMode::image, "image"_L1, "Image Focused"_L1, "photo.artframe"_L1,
                   "A prompt to recreate the visual in an image model"_L1},
};

}  // namespace

std::span<const PromptModeInfo> promptModes() { return kModes; }

const PromptModeInfo& info(PromptMode mode) { return *std::ranges::find(kModes, mode, &PromptModeInfo::mode); }

std::optional<PromptMode> promptMode(const QString& rawValue) {
  const auto row = std::ranges::find(kModes, rawValue, &PromptModeInfo::rawValue);
  return row == kModes.end() ? std::nullopt : std::optional(row->mode);
}

std::optional<PromptMode> modeOf(PromptStyleSetting style) {
  return style == PromptStyleSetting::ask ? std::nullopt : std::optional(static_cast<PromptMode>(style));
}

QString rawValue(PromptStyleSetting style) {
  const auto mode = modeOf(style);
  return mode ? QString(info(*mode).rawValue) : u"ask"_s;
}

QString label(PromptStyleSetting style) {
  const auto mode = modeOf(style);
  return mode ? QString(info(*mode).label) : u"Ask me every time"_s;
}

std::optional<PromptStyleSetting> promptStyle(const QString& text) {
  const auto found = std::ranges::find(kPromptStyles, text, [](PromptStyleSetting style) { return rawValue(style); });
  return found == kPromptStyles.end() ? std::nullopt : std::optional(*found);
}

bool decode(const QJsonValue& value, PromptStyleSetting& out) {
  const auto style = promptStyle(value.toString());
  if (style) out = *style;
  return style.has_value();
}
