#pragma once

#include <cstdint>

/// Carbon's modifier bits, the form in which shortcuts are stored on every platform.
namespace carbon {
inline constexpr std::uint32_t kCommand = 0x0100;
inline constexpr std::uint32_t kShift = 0x0200;
inline constexpr std::uint32_t kOption = 0x0800;
inline constexpr std::uint32_t kControl = 0x1000;
}  // namespace carbon
