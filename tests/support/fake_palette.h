#pragma once

#include "core/palette/palette_controller.h"

/// A palette's panel that draws nothing.
class SilentPanel final : public PalettePresenter {
 public:
  static std::unique_ptr<PalettePresenter> make() { return std::make_unique<SilentPanel>(); }

  void present() override {}
  void warmUp() override {}
  void dismiss() override {}
};

/// Keys as a palette's panel hands them over.
inline KeyPress code(std::uint32_t keyCode, bool command = false) { return {.keyCode = keyCode, .command = command}; }
inline KeyPress letter(QChar character, bool command = false) {
  return {.command = command, .characters = QString(character), .charactersIgnoringModifiers = QString(character)};
}
inline void typeInto(PaletteController& palette, const QString& text) {
  for (const QChar character : text) palette.handleKey(letter(character));
}
