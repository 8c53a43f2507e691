#pragma once

#include <QString>

#include <array>

/// What is counted, as clients and database call it.
inline constexpr std::array kMetrics = {
    QLatin1StringView("answers"),
    QLatin1StringView("text"),
    QLatin1StringView("image_answers"),
    QLatin1StringView("image_generate"),
};
