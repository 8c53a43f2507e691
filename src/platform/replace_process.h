#pragma once

#include <QString>

#include "base/login_shell.h"

/// Lets `call` take this process's place, with its terminal. Returns only when that failed, with the system's words.
QString replaceProcess(const ShellCall& call);
