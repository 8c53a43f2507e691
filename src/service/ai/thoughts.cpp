#include "service/ai/thoughts.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kBegin = "<think>"_L1;
constexpr auto kEnd = "</think>"_L1;

QString withoutLeadingSpace(const QString& text) {
  const auto* const first = std::ranges::find_if_not(text, [](QChar c) { return c.isSpace(); });
  return text.sliced(first - text.begin());
}

}  // namespace

QString Thoughts::pass(const QString& piece) {
  if (state_ == State::over) return piece;
  held_ += piece;
  if (state_ == State::unknown) {
    const QString begun = withoutLeadingSpace(held_);
    if (begun.size() < kBegin.size() && kBegin.startsWith(begun)) return {};
    state_ = begun.startsWith(kBegin) ? State::inside : State::over;
    if (state_ == State::over) return std::exchange(held_, {});
  }
  const qsizetype end = held_.indexOf(kEnd);
  if (end < 0) {
    // No more than the end could begin with.
    held_ = held_.last(std::min(held_.size(), kEnd.size()));
    return {};
  }
  state_ = State::over;
  return withoutLeadingSpace(std::exchange(held_, {}).sliced(end + kEnd.size()));
}

QString Thoughts::finish() {
  // A block that does not end has no answer after it.
  return std::exchange(state_, State::over) == State::inside ? QString() : std::exchange(held_, {});
}
