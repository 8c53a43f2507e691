#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

/// The value of an integer setting in the bytes that a settings manager publishes; nothing when it is absent, of
/// another type, or the bytes are not whole.
std::optional<std::int32_t> integerSetting(const QByteArray& published, QByteArrayView name);
