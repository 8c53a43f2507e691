#include "platform/command_key.h"

#include <QtGlobal>

using namespace Qt::StringLiterals;

KeyboardKind systemKeyboard() {
#ifdef Q_OS_MACOS
  return KeyboardKind::mac;
#else
  return KeyboardKind::pc;
#endif
}

QString keyText(const QString& text, KeyboardKind keyboard) {
  if (keyboard == KeyboardKind::mac) return text;
  return QString(text).replace(u"⇧⌘"_s, u"Ctrl+Shift+"_s).replace(u"⌘"_s, u"Ctrl+"_s);
}

QStringList keyCaps(const QStringList& caps, KeyboardKind keyboard) {
  if (keyboard == KeyboardKind::mac) return caps;
  // A combination that is drawn on one cap is a text.
  if (caps.size() == 1) return {keyText(caps.front(), keyboard)};
  return caps.contains(u"⌘"_s) ? keyText(caps.join(QString()), keyboard).split(u'+') : caps;
}
