#pragma once

class QPainter;
class QRect;
class QStyleOption;
class QStyleOptionSlider;
struct Theme;

/// How single controls look; which of them is asked for is the style's business.
namespace control {

/// Buttons and what opens a menu.
void paintButton(QPainter& painter, const QStyleOption& option, const Theme& theme);
/// The ground of text fields.
void paintField(QPainter& painter, const QStyleOption& option, const Theme& theme);
/// The edge and ground of a list that hangs below its box.
void paintListFrame(QPainter& painter, const QStyleOption& option, const Theme& theme);
/// Buttons without an edge of their own: only shaded under the pointer.
void paintFlatButton(QPainter& painter, const QStyleOption& option, const Theme& theme);
/// Shows that the keyboard is at what has no edge to say so.
void paintFocusRing(QPainter& painter, const QRect& rect, const Theme& theme);
void paintCheckBox(QPainter& painter, const QStyleOption& option, const Theme& theme);
/// A small symbol in the middle of `rect`.
void paintMark(QPainter& painter, const char16_t* symbol, const QRect& rect, const QStyleOption& option,
               const Theme& theme);
void paintScrollThumb(QPainter& painter, const QRect& thumb, const QStyleOptionSlider& option, const Theme& theme);

}  // namespace control
