#pragma once

#include <QRectF>
#include <QString>

#include "app/shortcuts/keyboard_layout_model.h"

class QPainter;
struct Theme;

/// How one drawn key looks.
struct KeyFace {
  QString legend = {};
  /// Symbol name of what it carries; empty for keys that carry nothing.
  QString icon = {};
  KeyMark mark = KeyMark::none;
  KeyLight light = KeyLight::rest;
  /// Its combination does not reach its owner.
  bool isBlocked = false;
  bool isOffline = false;
  bool isHovered = false;
  bool isFocused = false;

  bool operator==(const KeyFace&) const = default;
};

/// Pixels from one key to the next.
inline constexpr int kKeyPitch = 48;

KeyFace faceOf(const KeyboardLayoutModel& model, const KeyboardLayoutModel::Key& key);
/// Paints a key into its cell, which includes half of the gap to its neighbours.
void paintKey(QPainter& painter, const QRectF& cell, const KeyFace& face, const Theme& theme);
