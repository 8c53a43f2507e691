#include "service/ai/provider_slot.h"

#include "service/ai/chat_provider.h"
#include "service/ai/command_provider.h"
#include "service/ai/message_provider.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kAnthropicBase = "https://api.anthropic.com"_L1;

}  // namespace

Answered<std::vector<Picture>> Provider::draw(const Drawing&, const AICall&) {
  return std::unexpected(
      AIError{AIError::Reason::setup, u"This AI provider makes no pictures; an OpenAI-compatible one can."_s});
}

QString ProviderSlot::hint(const QString& inSettings, const QString& onCommandLine) const {
  return audience_ == Audience::person ? inSettings + u" in Settings → General, AI provider."_s
                                       : u"Start vantle-service with "_s + onCommandLine + u'.';
}

std::shared_ptr<Provider> ProviderSlot::make(const ProviderSettings& settings) const {
  switch (settings.kind) {
    case ProviderSettings::Kind::chat:
      return std::make_shared<ChatProvider>(ChatProvider::Setup{.base = QUrl(settings.baseUrl),
                                                                .key = settings.key,
                                                                .model = settings.model,
                                                                .imageModel = settings.imageModel,
                                                                .hint = hint(u"Enter one"_s, u"--ai-image-model"_s)});
    case ProviderSettings::Kind::messages:
      return std::make_shared<MessageProvider>(
          QUrl(settings.baseUrl.isEmpty() ? QString(kAnthropicBase) : settings.baseUrl), settings.key, settings.model);
    case ProviderSettings::Kind::command:
      return std::make_shared<CommandProvider>(settings.command, folder_);
    case ProviderSettings::Kind::none:
      break;
  }
  return nullptr;
}

void ProviderSlot::set(const ProviderSettings& settings) {
  QString problem = settings.problem;
  if (const auto checked = settings.check(); !checked && problem.isEmpty())
    problem = u"The AI provider cannot be used: %1. "_s.arg(checked.error()) + hint(u"Set it"_s, u"another"_s);
  auto provider = problem.isEmpty() ? make(settings) : nullptr;
  const std::lock_guard lock(mutex_);
  provider_ = std::move(provider);
  problem_ = problem;
}

Answered<std::shared_ptr<Provider>> ProviderSlot::current() const {
  const std::lock_guard lock(mutex_);
  if (provider_) return provider_;
  const QString text =
      problem_.isEmpty() ? u"No AI provider is set. "_s + hint(u"Choose one"_s, u"--ai-provider"_s) : problem_;
  return std::unexpected(AIError{AIError::Reason::setup, text});
}
