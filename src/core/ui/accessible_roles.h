#pragma once

#include <QAccessible>

class QWidget;

/// Tells screen readers what a plain widget is: a window, a list. Without it they take it for a box among others.
/// Call it from the constructor: later it may have been asked already.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);
