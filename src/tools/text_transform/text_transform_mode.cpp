#include "tools/text_transform/text_transform_mode.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Mode = TextTransformMode;
using Names = TextTransformModeNames;

constexpr std::array kModes = {
    Names{Mode::improve, "improve"_L1, u"Write this better", "wand.and.sparkles"_L1, "improve"_L1},
    Names{Mode::enhancePrompt, "enhancePrompt"_L1, u"Enhance Prompt", "text.badge.star"_L1, "enhance-prompt"_L1},
    Names{Mode::shorten, "shorten"_L1, u"Shorten Text", "text.append"_L1, "shorten"_L1},
    Names{Mode::fixGrammar, "fixGrammar"_L1, u"Fix grammar", "checkmark.seal"_L1, "fix-grammar"_L1},
    Names{Mode::custom, "custom"_L1, u"Custom Prompt…", "square.and.pencil"_L1, {}},
};

}  // namespace

std::span<const TextTransformModeNames> textTransformModes() { return kModes; }

const TextTransformModeNames& namesOf(TextTransformMode mode) { return *std::ranges::find(kModes, mode, &Names::mode); }

std::optional<TextTransformMode> textTransformMode(const QString& action) {
  const auto row = std::ranges::find(kModes, action, &Names::action);
  return row == kModes.end() || action.isEmpty() ? std::nullopt : std::optional(row->mode);
}
