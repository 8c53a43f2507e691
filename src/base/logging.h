#pragma once

#include <QLoggingCategory>

/// Categories of the log; quiet by default but for warnings, switched with QT_LOGGING_RULES.
Q_DECLARE_LOGGING_CATEGORY(lcSettings)
Q_DECLARE_LOGGING_CATEGORY(lcHotkeys)
Q_DECLARE_LOGGING_CATEGORY(lcPlatform)
Q_DECLARE_LOGGING_CATEGORY(lcTyping)
Q_DECLARE_LOGGING_CATEGORY(lcCapture)

/// Whatever QT_LOGGING_RULES says, those categories of Qt stay quiet that would write what is typed, read aloud or laid
/// out. To be called once, before anything else.
void keepTextsOutOfTheLog();
