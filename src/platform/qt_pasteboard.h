#pragma once

#include "platform/pasteboard.h"

/// The clipboard by Qt, which is the system's own on both platforms; writes only. Needs a QGuiApplication.
class QtPasteboard : public Pasteboard {
 public:
  void writeText(const QString& text) override;
};
