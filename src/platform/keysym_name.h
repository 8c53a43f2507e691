#pragma once

#include <QString>

struct KeyCode;

/// What X and Wayland call the symbol of a key: "u", "comma", "Return".
QString keysymName(const KeyCode& key);
