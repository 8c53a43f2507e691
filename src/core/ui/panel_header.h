#pragma once

#include <QString>

class QWidget;

/// The head of a small panel: a symbol and what the panel is about.
QWidget* makePanelHeader(const QString& symbol, const QString& text);
