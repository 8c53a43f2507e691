#include "tools/feedback/report_clients.h"

using namespace Qt::StringLiterals;

namespace {

ReportSender::Report asReport(const FeedbackClient::Feedback& feedback) {
  return {{{u"category"_s, info(feedback.category).rawValue}, {u"message"_s, feedback.message}}, feedback.snips};
}

ReportSender::Report asReport(const SuggestClient::Suggestion& suggestion) {
  return {{{u"suggestion"_s, suggestion.idea}}, suggestion.snips};
}

}  // namespace

void FeedbackClient::submit(const Feedback& feedback, const JobRef& job, Done done) {
  sender_.send<FeedbackEnvironment>(asReport(feedback), job, std::move(done));
}

void FeedbackClient::submit(const Feedback& feedback, const FeedbackEnvironment& environment, const JobRef& job,
                            Done done) {
  sender_.send(asReport(feedback), environment, job, std::move(done));
}

void SuggestClient::submit(const Suggestion& suggestion, const JobRef& job, Done done) {
  sender_.send<SuggestEnvironment>(asReport(suggestion), job, std::move(done));
}

void SuggestClient::submit(const Suggestion& suggestion, const SuggestEnvironment& environment, const JobRef& job,
                           Done done) {
  sender_.send(asReport(suggestion), environment, job, std::move(done));
}
