#pragma once

#include <QImage>
#include <QString>

/// The system's own drawing of a symbol ("doc.on.doc"), as large as fits into a square of `pixels`, in black on clear
/// ground; null where it has none. Main thread only.
QImage systemSymbol(const QString& name, int pixels);
