#include "platform/qt_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

void QtPasteboard::writeText(const QString& text) { QGuiApplication::clipboard()->setText(text); }
