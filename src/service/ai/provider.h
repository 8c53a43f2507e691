#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <expected>
#include <functional>
#include <stop_token>
#include <vector>

/// One picture, encoded; `type` is what its bytes say that it is.
struct Picture {
  QByteArray bytes;
  QByteArray type;
};

/// One thing said in a conversation.
struct Turn {
  enum class Speaker { user, assistant };

  Speaker speaker = Speaker::user;
  QString text;
  std::vector<Picture> pictures = {};
};

/// A conversation that wants an answer; the last turn is the user's.
struct Question {
  /// How to answer.
  QString instructions;
  std::vector<Turn> turns;
  /// Room for the answer, in the provider's units of about four characters, where the provider has to be told.
  int room = 4096;
  /// An answer that ends at the provider's own limit is still of use.
  bool mayBeCut = false;
};

/// A picture that is to be made.
struct Drawing {
  QString prompt;
  /// As the provider calls it; empty: its own choice.
  QString size;
  QString quality;
  std::vector<Picture> references;
  /// The first reference is to be changed, instead of something new made.
  bool isEdit = false;
};

/// Why there is no answer. Nothing of it goes to the log.
struct AIError {
  enum class Reason {
    /// Something has to be set first.
    setup,
    /// The provider failed, or what it said is of no use.
    provider,
    /// Nobody waits for the answer any more.
    abandoned,
  };

  Reason reason = Reason::provider;
  /// For whoever asked. What matters stands first: clients show the beginning.
  QString text;
};

template <typename Value>
using Answered = std::expected<Value, AIError>;

/// What goes with one question to a provider.
struct AICall {
  std::chrono::seconds limit{55};
  std::chrono::steady_clock::time_point deadline;
  /// Asked to stop when the client goes away.
  std::stop_token gone;
  /// Gets the answer in pieces as it comes, on the thread of the call; empty: nobody wants pieces.
  std::function<void(const QString&)> onPiece;
};

/// Who answers. Each call blocks until the answer is whole, at most until the deadline. Several threads at a time.
class Provider {
 public:
  virtual ~Provider() = default;

  /// The whole answer, also when it went out in pieces.
  virtual Answered<QString> ask(const Question& question, const AICall& call) = 0;
  /// At least one picture.
  virtual Answered<std::vector<Picture>> draw(const Drawing& drawing, const AICall& call);
};
