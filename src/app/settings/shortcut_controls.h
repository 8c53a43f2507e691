#pragma once

#include <QString>

#include "app/app_context.h"

class QWidget;

/// The recorder for a tool's shortcut.
QWidget* makeRecorder(AppContext& context, const Tool& tool);
/// Why a tool's shortcut does not work although it has one; empty when it does.
QString refusalText(const AppContext& context, const QString& toolID);
