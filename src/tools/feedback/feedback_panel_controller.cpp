#include "tools/feedback/feedback_panel_controller.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The keys of the digits from 1 on.
constexpr std::array<std::uint32_t, 3> kDigits = {18, 19, 20};

}  // namespace

FeedbackPanelController::FeedbackPanelController(Services services, FeedbackClient& client, PanelFactory makePanel)
    : ReportPanelController(services, std::move(makePanel)), client_(client) {}

void FeedbackPanelController::send(const JobRef& job, Done done) {
  client_.submit({model_.category(), model_.message(), snips()}, job, std::move(done));
}

bool FeedbackPanelController::handleOwnKey(const KeyPress& key) {
  if (key.keyCode == keycode::kTab && !key.command) {
    cycleCategory(!key.shift);
    return true;
  }
  for (std::size_t place = 0; key.command && place < kDigits.size(); ++place) {
    if (!key.isKey(static_cast<char16_t>(u'1' + place), kDigits[place])) continue;
    select(feedbackCategories()[place].category);
    return true;
  }
  return false;
}

SuggestPanelController::SuggestPanelController(Services services, SuggestClient& client, PanelFactory makePanel)
    : ReportPanelController(services, std::move(makePanel)), client_(client) {}

QString SuggestPanelController::placeholder() const {
  return u"Describe the tool you wish was here — what it does, when you'd reach for it…"_s;
}

void SuggestPanelController::send(const JobRef& job, Done done) {
  client_.submit({model_.idea(), snips()}, job, std::move(done));
}
