#include "core/tools/tool_disclosure.h"

#include <algorithm>
#include <array>

#include "platform/system_info.h"

using namespace Qt::StringLiterals;

namespace {

struct Disclosure {
  QLatin1StringView tool;
  /// Empty: nothing leaves the computer.
  QLatin1StringView sends;
};

constexpr std::array kDisclosures = {
    Disclosure{"frequent-clis"_L1, {}},
    Disclosure{"uplink"_L1,
               "Sends the copied image, or the part of the screen you draw, to the link service when you press the "
               "shortcut. Links expire after 90 days."_L1},
    Disclosure{"promptify"_L1,
               "Sends the copied image, or the part of the screen you draw, and the style you chose to the link "
               "service when you press the shortcut."_L1},
    Disclosure{"quick-question"_L1,
               "Sends your question, the images you attach and the conversation so far to the API service when you "
               "press Return. Nothing while you type."_L1},
    Disclosure{"bulk-upload"_L1,
               "Sends the files you dropped to the link service when you click Upload, never on drop. Links expire "
               "after 90 days."_L1},
    Disclosure{"ai-text-transform"_L1,
               "Sends the text you selected, and your instruction if you type one, to the API service when you choose "
               "what to do with it."_L1},
    Disclosure{"vibe-history"_L1, {}},
    Disclosure{"inject-md"_L1, {}},
    Disclosure{"open-project"_L1, {}},
    Disclosure{"image-ask"_L1,
               "Sends the part of the screen you draw, your question and the conversation so far to the API service "
               "when you press Return."_L1},
    Disclosure{"generate-image"_L1,
               "Sends your prompt and the images you attach to the API service when you start the generation."_L1},
    Disclosure{"boilerplates"_L1, {}},
    Disclosure{"suggest-tool"_L1,
               "Sends your words, the snips you choose and the versions of Vantle and %1 to the API service when you "
               "send the suggestion."_L1},
    Disclosure{"feedback"_L1,
               "Sends your message and its kind, the snips you choose and the versions of Vantle and %1 to the API "
               "service when you send it."_L1},
};

QLatin1StringView sentBy(const ToolInfo& tool) {
  const auto row = std::ranges::find(kDisclosures, tool.id, &Disclosure::tool);
  if (row == kDisclosures.end()) qFatal("Nobody says what the tool %s sends", tool.id.data());
  return row->sends;
}

}  // namespace

bool sendsAnything(const ToolInfo& tool) { return !sentBy(tool).isEmpty(); }

QString disclosure(const ToolInfo& tool, const SystemInfo& system) {
  QString text = sentBy(tool);
  if (text.isEmpty()) return u"Stays on %1."_s.arg(system.thisComputer());
  return text.replace("%1"_L1, system.systemName());
}
