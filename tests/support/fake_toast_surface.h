#pragma once

#include "core/ui/toast/toast_surface.h"

/// A toast's window that only remembers what was asked of it.
class FakeToastSurface final : public ToastSurface {
 public:
  bool isOnScreen() const override { return onScreen; }
  void orderFront() override {
    onScreen = true;
    ++fronts;
  }
  void orderOut() override { onScreen = false; }

  bool onScreen = false;
  int fronts = 0;
};
