#include "tools/feedback/feedback_category.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

std::span<const FeedbackCategoryInfo> feedbackCategories() {
  static const std::array kCategories = {
      FeedbackCategoryInfo{FeedbackCategory::bug, "bug"_L1, "Bug"_L1, "ladybug.fill"_L1,
                           u"What went wrong? What did you expect instead? Steps to reproduce help a ton…"_s},
      FeedbackCategoryInfo{FeedbackCategory::feedback, "feedback"_L1, "Feedback"_L1, "bubble.left.fill"_L1,
                           u"What's working, what's annoying, what would make the app better for you…"_s},
      FeedbackCategoryInfo{FeedbackCategory::question, "question"_L1, "Question"_L1, "questionmark.circle.fill"_L1,
                           u"What are you trying to do, and where did you get stuck…"_s},
  };
  return kCategories;
}

const FeedbackCategoryInfo& info(FeedbackCategory category) {
  return *std::ranges::find(feedbackCategories(), category, &FeedbackCategoryInfo::category);
}

std::optional<FeedbackCategory> feedbackCategory(const QString& rawValue) {
  const auto all = feedbackCategories();
  const auto row = std::ranges::find(all, rawValue, &FeedbackCategoryInfo::rawValue);
  return row == all.end() ? std::nullopt : std::optional(row->category);
}
