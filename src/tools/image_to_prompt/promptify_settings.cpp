#include "tools/image_to_prompt/promptify_settings.h"

using namespace Qt::StringLiterals;

/// A file with something in it that nobody understands counts as none.
void PromptifySettings::read(JsonReader& reader) {
  reader.read("style"_L1, style);
  reader.read("source"_L1, source);
  if (reader.hasMisfits()) *this = {};
}

void PromptifySettings::write(QJsonObject& object) const {
  object.insert("style"_L1, rawValue(style));
  object.insert("source"_L1, rawValue(source));
}
