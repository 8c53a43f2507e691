#pragma once

#include <QPainter>

#include "core/ui/toast/toast_layout.h"

struct Theme;

/// What changes from frame to frame while a toast stands.
struct ToastFrame {
  /// Of the countdown: 1 whole, 0 gone; negative for none.
  double remaining = -1;
  /// Of the spinner, in turns.
  double turn = 0;
};

/// Paints a toast's contents, the card apart, with the painter's origin at the card's corner.
void paintToast(QPainter& painter, const ToastContent& content, const ToastLayout& layout, const ToastFrame& frame,
                const Theme& theme);
