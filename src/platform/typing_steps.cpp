#include "platform/typing_steps.h"

#include <utility>

namespace {

bool isControl(char32_t character) { return character < 0x20 || (character >= 0x7f && character < 0xa0); }

/// Decodes chunk by chunk; remembers what a chunk ended with.
class Decoder {
 public:
  std::u32string decode(const QString& chunk) {
    std::u32string characters;
    characters.reserve(static_cast<std::size_t>(chunk.size()));
    for (const QChar unit : chunk) add(unit, characters);
    return characters;
  }

  /// A key between two chunks separates what would otherwise belong together.
  void separate() {
    high_ = {};
    afterReturn_ = false;
  }

 private:
  void add(QChar unit, std::u32string& out) {
    const QChar high = std::exchange(high_, QChar());
    if (unit.isHighSurrogate()) {
      high_ = unit;
      return;
    }
    if (unit.isLowSurrogate()) {
      if (!high.isNull()) append(QChar::surrogateToUcs4(high, unit), out);
      return;
    }
    append(unit.unicode(), out);
  }

  void append(char32_t character, std::u32string& out) {
    const bool afterReturn = std::exchange(afterReturn_, character == U'\r');
    if (character == U'\r' || (character == U'\n' && !afterReturn))
      out.push_back(U'\n');
    else if (character == U'\t' || !isControl(character))
      out.push_back(character);
  }

  QChar high_;
  bool afterReturn_ = false;
};

}  // namespace

std::vector<TypingStep> typingSteps(const KeySequence& steps) {
  std::vector<TypingStep> typed;
  typed.reserve(steps.size());
  Decoder decoder;
  for (const KeyStep& step : steps) {
    if (const auto* text = std::get_if<TypeText>(&step)) {
      typed.emplace_back(decoder.decode(text->text));
    } else if (const auto* key = std::get_if<PressKey>(&step)) {
      decoder.separate();
      typed.emplace_back(*key);
    } else {
      typed.emplace_back(std::get<Pause>(step));
    }
  }
  return typed;
}
