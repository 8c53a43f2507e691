#include <algorithm>
#include <array>

#include "core/tools/tool.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Hotkey controlOption(std::uint32_t keyCode) { return {keyCode, carbon::kControl | carbon::kOption}; }

constexpr std::array kTools = {
    ToolInfo{"frequent-clis"_L1, "Frequent CLIs"_L1, "terminal.fill"_L1, controlOption(36), false,
             "Types a saved command into the terminal you are in."_L1},
    ToolInfo{"uplink"_L1, "Image to URL"_L1, "link.badge.plus"_L1, controlOption(32), true,
             "Turns the image on the clipboard, or a piece of the screen, into a link."_L1},
    ToolInfo{"promptify"_L1, "Image to Prompt"_L1, "wand.and.stars"_L1, controlOption(35), true,
             "Describes an image as the prompt that would recreate it."_L1},
    ToolInfo{"quick-question"_L1, "Ask AI"_L1, "questionmark.bubble.fill"_L1, controlOption(40), true,
             "Answers a quick question without leaving what you are doing."_L1},
    ToolInfo{"bulk-upload"_L1, "File Drop"_L1, "square.and.arrow.up.on.square.fill"_L1, controlOption(37), true,
             "Turns files and folders into one link."_L1},
    ToolInfo{"ai-text-transform"_L1, "AI Text Transform"_L1, "wand.and.rays"_L1, controlOption(42), true,
             "Rewrites the selected text in place."_L1},
    ToolInfo{"vibe-history"_L1, "Vibe History"_L1, "clock.arrow.circlepath"_L1, controlOption(1), false,
             "Finds and resumes your recent agent conversations."_L1},
    ToolInfo{"inject-md"_L1, "Inject MD"_L1, "arrow.down.doc.fill"_L1, controlOption(0), false,
             "Writes an instruction file for agents into a project."_L1},
    ToolInfo{"open-project"_L1, "Open Project"_L1, "macwindow.on.rectangle"_L1, controlOption(31), false,
             "Opens a recent project in your terminal or editor."_L1},
    ToolInfo{"image-ask"_L1, "Image Ask"_L1, "photo.on.rectangle.angled"_L1, controlOption(34), true,
             "Answers questions about a piece of the screen."_L1},
    ToolInfo{"generate-image"_L1, "Generate Image"_L1, "sparkles.rectangle.stack.fill"_L1, controlOption(5), true,
             "Makes an image from a prompt."_L1},
    ToolInfo{"boilerplates"_L1, "Boilerplates"_L1, "shippingbox.fill"_L1, controlOption(45), false,
             "Starts a project from one of your template folders."_L1},
    ToolInfo{"suggest-tool"_L1, "Suggest a Tool"_L1, "lightbulb.fill"_L1, controlOption(3), true,
             "Sends us an idea for the next tool."_L1},
    ToolInfo{"feedback"_L1, "Feedback"_L1, "ladybug.fill"_L1, controlOption(11), true,
             "Sends us a bug report, feedback or a question."_L1},
};

}  // namespace

std::span<const ToolInfo> toolTable() { return kTools; }

const ToolInfo& toolInfo(QLatin1StringView id) { return *std::ranges::find(kTools, id, &ToolInfo::id); }
