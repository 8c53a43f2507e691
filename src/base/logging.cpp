#include "base/logging.h"

#include <algorithm>
#include <array>
#include <string_view>

Q_LOGGING_CATEGORY(lcSettings, "vantle.settings", QtWarningMsg)
Q_LOGGING_CATEGORY(lcHotkeys, "vantle.hotkeys", QtWarningMsg)
Q_LOGGING_CATEGORY(lcPlatform, "vantle.platform", QtWarningMsg)
Q_LOGGING_CATEGORY(lcTyping, "vantle.typing", QtWarningMsg)
Q_LOGGING_CATEGORY(lcCapture, "vantle.capture", QtWarningMsg)

namespace {

/// Texts of windows, of the accessibility tree and of input methods, and single keys.
constexpr std::array<std::string_view, 6> kWithTexts = {
    "qt.text.", "qt.accessibility", "qt.qpa.input", "qt.qpa.wayland.textinput", "qt.qpa.xkeyboard", "qt.qpa.keys",
};
QLoggingCategory::CategoryFilter byTheRules = nullptr;

void filterCategory(QLoggingCategory* category) {
  byTheRules(category);
  const std::string_view name(category->categoryName());
  const bool hasTexts = std::ranges::any_of(kWithTexts, [name](std::string_view one) { return name.starts_with(one); });
  for (const QtMsgType type : {QtDebugMsg, QtInfoMsg})
    if (hasTexts) category->setEnabled(type, false);
}

}  // namespace

void keepTextsOutOfTheLog() { byTheRules = QLoggingCategory::installFilter(filterCategory); }
