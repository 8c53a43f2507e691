#include "app/warm_up.h"

#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto kDelay = 400ms;
/// For what has come in meanwhile, and for its painting.
constexpr auto kBetween = 10ms;

}  // namespace

void WarmUp::begin(std::deque<Step> steps) {
  steps_ = std::move(steps);
  clock_.after(kDelay, job_, [this] { runNext(); });
}

void WarmUp::runNext() {
  if (steps_.empty()) return;
  const Step step = std::move(steps_.front());
  steps_.pop_front();
  step();
  clock_.after(kBetween, job_, [this] { runNext(); });
}
