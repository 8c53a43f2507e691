#pragma once

#include <QString>

#include <optional>
#include <span>

/// What kind of report it is, in the order in which they are offered.
enum class FeedbackCategory { bug, feedback, question };

/// All that is shown and sent of one.
struct FeedbackCategoryInfo {
  FeedbackCategory category;
  /// As it is sent.
  QLatin1StringView rawValue;
  QLatin1StringView label;
  QLatin1StringView symbol;
  /// What an empty message area asks for.
  QString placeholder;
};

std::span<const FeedbackCategoryInfo> feedbackCategories();
const FeedbackCategoryInfo& info(FeedbackCategory category);
/// None for a text that names no category.
std::optional<FeedbackCategory> feedbackCategory(const QString& rawValue);
