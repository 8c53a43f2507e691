#pragma once

#include "support/gallery/pieces.h"

/// Toasts of all kinds on one sheet.
Piece toasts();
/// A desktop's background for cards to stand on.
void paintDesktop(QWidget& widget);
