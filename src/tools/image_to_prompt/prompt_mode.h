#pragma once

#include <QJsonValue>
#include <QString>

#include <array>
#include <optional>
#include <span>

/// What the prompt is for, in the order in which it is offered.
enum class PromptMode { ui, general, image };

/// All that is shown and sent of one.
struct PromptModeInfo {
  PromptMode mode;
  /// As it is sent and stored.
  QLatin1StringView rawValue;
  QLatin1StringView label;
  QLatin1StringView symbol;
  QLatin1StringView description;
};

std::span<const PromptModeInfo> promptModes();
const PromptModeInfo& info(PromptMode mode);
/// None for a text that names no mode.
std::optional<PromptMode> promptMode(const QString& rawValue);

/// What the user has chosen once and for all: one of the modes, or to be asked each time.
enum class PromptStyleSetting { ui, general, image, ask };

inline constexpr std::array kPromptStyles = {PromptStyleSetting::ui, PromptStyleSetting::general,
                                             PromptStyleSetting::image, PromptStyleSetting::ask};

QString rawValue(PromptStyleSetting style);
QString label(PromptStyleSetting style);
/// None for a text that names no style.
std::optional<PromptStyleSetting> promptStyle(const QString& rawValue);
bool decode(const QJsonValue& value, PromptStyleSetting& out);
/// None: the user is asked.
std::optional<PromptMode> modeOf(PromptStyleSetting style);
