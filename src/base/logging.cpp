#include "base/logging.h"

Q_LOGGING_CATEGORY(lcSettings, "vantle.settings", QtWarningMsg)
Q_LOGGING_CATEGORY(lcHotkeys, "vantle.hotkeys", QtWarningMsg)
Q_LOGGING_CATEGORY(lcPlatform, "vantle.platform", QtWarningMsg)
Q_LOGGING_CATEGORY(lcTyping, "vantle.typing", QtWarningMsg)
Q_LOGGING_CATEGORY(lcCapture, "vantle.capture", QtWarningMsg)
