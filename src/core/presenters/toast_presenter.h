#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

/// What a toast's icon says by its colour, in either appearance.
enum class ToastTone { plain, accent, success, failure };

/// One toast, as a value; members left out of an initialiser mean "none", as do empty texts and null images.
struct ToastContent {
  /// Symbol name of the leading icon.
  QString icon{};
  QColor iconColor{};
  /// The icon's colour where `iconColor` names none.
  ToastTone tone = ToastTone::plain;
  /// Image asset used instead of a symbol.
  QString assetIcon{};
  QString title{};
  QString detail{};
  /// The most lines the detail may wrap to.
  int detailLineLimit = 2;
  /// For commands and paths.
  bool detailMonospaced = false;
  /// A spinner in place of the icon, while work is under way.
  bool showsSpinner = false;
  /// Announces a finished task and plays the completion sound.
  bool completes = false;
  bool tall = false;
  /// Key caps to draw, after `keysPrefix`.
  QStringList keys{};
  QString keysPrefix{};
  /// Shown at the leading edge.
  QImage thumbnail{};
  /// Runs when the card is clicked.
  std::function<void()> onTap{};
};

/// Shows toasts, one at a time. Main thread only.
class ToastPresenter {
 public:
  virtual ~ToastPresenter() = default;

  /// Shows `content` for `duration`, in place of the toast that is up.
  virtual void show(ToastContent content, std::chrono::milliseconds duration) = 0;
  virtual void dismiss(bool animated) = 0;
};
