#pragma once

#include <QLoggingCategory>

/// Categories of the log; quiet by default but for warnings, switched with QT_LOGGING_RULES.
Q_DECLARE_LOGGING_CATEGORY(lcSettings)
Q_DECLARE_LOGGING_CATEGORY(lcHotkeys)
Q_DECLARE_LOGGING_CATEGORY(lcPlatform)
Q_DECLARE_LOGGING_CATEGORY(lcTyping)
Q_DECLARE_LOGGING_CATEGORY(lcCapture)
