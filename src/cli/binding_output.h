#pragma once

#include <QJsonObject>

#include <vector>

#include "cli/command.h"
#include "core/tools/compositor_bindings.h"

/// What desktops are to be told, and which one this is (`SystemInfo::desktops`).
struct Bindings {
  std::vector<BoundCommand> commands;
  QString desktops;
};

/// What `printBindings` has for scripts, of this session.
QJsonObject sessionBindings(const Bindings& bindings);

/// Prints what binds the combinations in a desktop, by its id; "session": in this one, "all": in each that we know.
/// An unknown id is a usage error.
int printBindings(const Bindings& bindings, const QString& which, bool json, CommandContext& context);
