#pragma once

#include "cli/command.h"

/// "vantle config service …": the hosts, their token, and the user's credential. Both secrets are read from standard
/// input, so that they stand in no list of processes and no shell's history.
int runServiceConfig(const QStringList& words, CommandContext& context);
