#pragma once

class QWidget;

/// The page of a tool that is not built yet: says so, and what works all the same.
QWidget* makePlaceholderView(QWidget* parent);
