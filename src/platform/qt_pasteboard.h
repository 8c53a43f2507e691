#pragma once

#include "platform/pasteboard.h"

/// The clipboard by Qt, which is the system's own on both platforms. Needs a QGuiApplication.
class QtPasteboard final : public Pasteboard {
 public:
  void writeText(const QString& text) override;
};
