#pragma once

#include "tools/feedback/feedback_category.h"
#include "tools/feedback/report_sender.h"

/// Brings a bug report, feedback or a question to the maker. Main thread only.
class FeedbackClient {
 public:
  using Done = ReportSender::Done;
  struct Feedback {
    FeedbackCategory category = FeedbackCategory::bug;
    QString message;
    /// PNGs.
    std::vector<QByteArray> snips{};
  };

  explicit FeedbackClient(ReportSender& sender) : sender_(sender) {}

  /// To where feedback goes at this moment.
  void submit(const Feedback& feedback, const JobRef& job, Done done);
  void submit(const Feedback& feedback, const FeedbackEnvironment& environment, const JobRef& job, Done done);

 private:
  ReportSender& sender_;
};

/// The same for the wish for a new tool.
class SuggestClient {
 public:
  using Done = ReportSender::Done;
  struct Suggestion {
    QString idea;
    /// PNGs.
    std::vector<QByteArray> snips{};
  };

  explicit SuggestClient(ReportSender& sender) : sender_(sender) {}

  /// To where suggestions go at this moment.
  void submit(const Suggestion& suggestion, const JobRef& job, Done done);
  void submit(const Suggestion& suggestion, const SuggestEnvironment& environment, const JobRef& job, Done done);

 private:
  ReportSender& sender_;
};
