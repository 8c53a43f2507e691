#pragma once

#include <memory>
#include <mutex>

#include "service/ai/provider.h"
#include "service/ai/provider_settings.h"

/// The provider that answers at present. It may change at any moment; questions under way stay with the one they were
/// put to. Any thread.
class ProviderSlot {
 public:
  /// Who reads the texts: somebody at Vantle's settings, or somebody who starts this program.
  enum class Audience { person, operatorOfService };

  /// `folder`: where commands work.
  ProviderSlot(Audience audience, QString folder) : audience_(audience), folder_(std::move(folder)) {}

  void set(const ProviderSettings& settings);
  /// Error: there is none, and how to set one.
  Answered<std::shared_ptr<Provider>> current() const;

 private:
  std::shared_ptr<Provider> make(const ProviderSettings& settings) const;
  QString hint(const QString& inSettings, const QString& onCommandLine) const;

  const Audience audience_;
  const QString folder_;
  mutable std::mutex mutex_;
  std::shared_ptr<Provider> provider_;
  QString problem_;
};
