#pragma once

#include <concepts>
#include <functional>

#include "core/settings/folders.h"
#include "services/metered_api.h"

/// Where the requests of one tool go.
struct ServiceEnvironment {
  QUrl endpoint;
  /// Whether an override file says so.
  bool isOverride = false;
};

/// What its requests carry; empty: nothing.
struct TokenEnvironment : ServiceEnvironment {
  QByteArray token;
};

/// One type a network tool: the folder of its override file ("config.json") and what it asks the services for. The
/// suggestions' folder has a name of its own for the sake of existing files.
struct UplinkEnvironment : TokenEnvironment {
  static constexpr QLatin1StringView kFolder{"Uplink"};
  static constexpr ServiceOperation kOperation = ServiceOperation::image;
};
struct BulkUploadEnvironment : TokenEnvironment {
  static constexpr QLatin1StringView kFolder{"BulkUpload"};
  static constexpr ServiceOperation kOperation = ServiceOperation::upload;
};
struct PromptifyEnvironment : TokenEnvironment {
  static constexpr QLatin1StringView kFolder{"Promptify"};
  static constexpr ServiceOperation kOperation = ServiceOperation::prompt;
};
struct QuickQuestionEnvironment : TokenEnvironment {
  static constexpr QLatin1StringView kFolder{"QuickQuestion"};
  static constexpr ServiceOperation kOperation = ServiceOperation::question;
};
struct ImageAskEnvironment : TokenEnvironment {
  static constexpr QLatin1StringView kFolder{"ImageAsk"};
  static constexpr ServiceOperation kOperation = ServiceOperation::imageQuestion;
};
struct SuggestEnvironment : TokenEnvironment {
  static constexpr QLatin1StringView kFolder{"SuggestTool"};
  static constexpr ServiceOperation kOperation = ServiceOperation::suggestion;
};
struct FeedbackEnvironment : TokenEnvironment {
  static constexpr QLatin1StringView kFolder{"Feedback"};
  static constexpr ServiceOperation kOperation = ServiceOperation::feedback;
};
/// Its requests carry the override's token where there is one, else the user's own credential, never the services'.
struct GenerateImageEnvironment : ServiceEnvironment {
  static constexpr QLatin1StringView kFolder{"GenerateImage"};
  static constexpr ServiceOperation kOperation = ServiceOperation::imageGeneration;

  std::optional<QByteArray> overrideToken;
};

/// The environments of the network tools, made anew for each request: an override file counts from the next request
/// on. Main thread only.
class Environments {
 public:
  template <class Environment>
  using Answer = std::function<void(std::expected<Environment, ServiceError>)>;

  Environments(const Folders& folders, MeteredAPI& api) : folders_(folders), api_(api) {}

  /// Answers later, after the start of the built-in service where that is asked. An override stands above all of it;
  /// one that cannot be read counts as none. Error: no service is set, or the built-in one does not start.
  template <class Environment>
  void current(const JobRef& job, Answer<Environment> answer) {
    constexpr bool kHasToken = std::derived_from<Environment, TokenEnvironment>;
    find(Environment::kFolder, Environment::kOperation, job, [answer = std::move(answer)](const auto& found) {
      if (!found) return answer(std::unexpected(found.error()));
      Environment environment;
      environment.endpoint = found->endpoint;
      environment.isOverride = found->isOverride;
      if constexpr (kHasToken)
        environment.token = found->token;
      else if (const QByteArray token = found->token.trimmed(); found->isOverride && !token.isEmpty())
        environment.overrideToken = token;
      answer(environment);
    });
  }

 private:
  struct Found {
    QUrl endpoint;
    QByteArray token;
    bool isOverride = false;
  };

  std::optional<Found> overrideIn(QLatin1StringView folder) const;
  void find(QLatin1StringView folder, ServiceOperation operation, const JobRef& job, Answer<Found> answer);

  const Folders& folders_;
  MeteredAPI& api_;
};
