#pragma once

#include <QString>

/// Takes out what some models think aloud before they answer: a block in <think> tags at the very beginning.
class Thoughts {
 public:
  /// What of the next piece belongs to the answer.
  QString pass(const QString& piece);
  /// Nothing follows: what was held back, should it have been the beginning of a block.
  QString finish();

 private:
  enum class State { unknown, inside, over };

  State state_ = State::unknown;
  QString held_;
};
