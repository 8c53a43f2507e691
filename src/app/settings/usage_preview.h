#pragma once

class Analytics;
class QWidget;

/// A row that shows what a usage event of this installation holds, made by the code that makes the real ones.
QWidget* makeUsagePreview(const Analytics& analytics);
