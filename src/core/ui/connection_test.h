#pragma once

#include "core/ui/check_control.h"

/// The section with the row "Connection" on a tool's settings page. `tool`: whose it is, for screen readers; `does`:
/// what the test does and costs.
QWidget* makeConnectionTest(const QString& tool, const QString& does, CheckControl::Run run);

/// As much of an error's description as a row's remark shows.
QString testFailure(const QString& description);

/// For the outcome of a request: `done` is told what `say` makes of its value, or in one line why there is none.
template <class Say>
auto tellingTest(CheckControl::Done done, Say say) {
  return [done = std::move(done), say = std::move(say)](const auto& outcome) {
    if (outcome)
      done(say(*outcome));
    else
      done(std::unexpected(testFailure(outcome.error().description())));
  };
}
