#pragma once

#include <QRect>
#include <QSize>
#include <QStringList>

#include "core/presenters/toast_presenter.h"

/// Where the parts of one toast stand on its card, in the card's coordinates. Parts that are absent are empty.
struct ToastLayout {
  QSize card;
  QRect leading;
  QRect title;
  QStringList titleLines;
  QRect detail;
  QStringList detailLines;
  /// `keysPrefix` and the key caps behind it.
  QRect keys;
  /// The countdown, or the close button while the pointer is on the card.
  QRect trailing;

  static ToastLayout of(const ToastContent& content);
};

/// The face of a toast's detail.
QFont toastDetailFont(const ToastContent& content);
