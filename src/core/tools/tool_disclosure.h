#pragma once

#include <QString>

#include "core/tools/tool.h"

class SystemInfo;

/// One sentence for the user: what the tool sends, when and where to; or that all of it stays here.
QString disclosure(const ToolInfo& tool, const SystemInfo& system);
/// Whether the tool sends anything at all.
bool sendsAnything(const ToolInfo& tool);
