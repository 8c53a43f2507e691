#include "app/settings/provider_section.h"

#include <QComboBox>

#include <array>

#include "app/settings/committed_field.h"
#include "app/settings/credential_control.h"
#include "core/ui/check_control.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "services/base_url.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kKindNames = {
    std::pair{ProviderKind::none, "None"_L1},
    std::pair{ProviderKind::openAICompatible, "OpenAI-compatible"_L1},
    std::pair{ProviderKind::anthropic, "Anthropic"_L1},
    std::pair{ProviderKind::command, "Command"_L1},
};

}  // namespace

ProviderSection::ProviderSection(SettingsPage& page, AppContext& context)
    : QObject(&page), services_(context.services), heading_(makeHeading(u"AI provider"_s)) {
  heading_->setContentsMargins(0, Theme::kGrid, 0, 0);
  page.addWidget(heading_);
  choice_ = page.addSection({});
  addKind(*choice_);
  addCheck(*choice_);
  online_ = page.addSection({});
  baseUrl_ = addField(*online_, u"Base URL"_s, {}, &AIProvider::baseUrl);
  addField(*online_, u"Model"_s, {}, &AIProvider::model);
  addKey(*online_);
  images_ = page.addSection({});
  addField(*images_, u"Image model"_s, u"Makes the pictures of Generate Image."_s, &AIProvider::imageModel);
  command_ = page.addSection({});
  addField(*command_, u"Command"_s, u"An agent that answers on its standard output: claude -p, for one."_s,
           &AIProvider::command);
  connect(&services_.provider, &StoreBase::changed, this, &ProviderSection::follow);
  connect(&services_.providerKey, &UserCredential::changed, this, &ProviderSection::showIdle);
  connect(&services_.configuration, &StoreBase::changed, this, &ProviderSection::showSections);
  follow();
}

void ProviderSection::addKind(SettingsSection& section) {
  kind_ = new QComboBox;
  for (const auto& [kind, name] : kKindNames) kind_->addItem(name, rawValue(kind));
  section.addRow(u"Provider"_s, u"Who answers the AI tools of the built-in service."_s, kind_);
  connect(kind_, &QComboBox::activated, this, [this] {
    const auto chosen = providerKind(kind_->currentData().toString());
    services_.provider.update([&](AIProvider& provider) { provider.kind = chosen.value_or(provider.kind); });
  });
}

void ProviderSection::addCheck(SettingsSection& section) {
  check_ = new CheckControl(u"AI provider"_s, [this](const JobRef& job, const auto& done) {
    services_.providerCheck.run(services_.provider.value(), job, [done](const auto& result) {
      if (result)
        done(*result);
      else
        done(std::unexpected(result.error().description()));
    });
  });
  check_->setRemark(section.addRow(u"Status"_s, {}, check_));
}

CommittedField* ProviderSection::addField(SettingsSection& section, const QString& title, const QString& description,
                                          QString AIProvider::* value) {
  AIProviderStore& store = services_.provider;
  const bool isUrl = value == &AIProvider::baseUrl;
  const auto fault = [isUrl](const QString& text) {
    if (!isUrl || text.isEmpty()) return QString();
    const auto url = parseBaseUrl(text);
    return url ? QString() : url.error().description();
  };
  const auto take = [&store, value](const QString& text) {
    store.update([&](AIProvider& provider) { provider.*value = text; });
  };
  auto* field = new CommittedField({[&store, value] { return store.value().*value; }, fault, take}, {});
  field->setRemark(section.addRow(title, description, field));
  fields_.push_back(field);
  return field;
}

void ProviderSection::addKey(SettingsSection& section) {
  auto* key = new CredentialControl(services_.providerKey, u"API key"_s);
  key->setRemark(section.addRow(u"API key"_s, u"Kept in the keychain only."_s, key));
}

void ProviderSection::follow() {
  const AIProvider& provider = services_.provider.value();
  kind_->setCurrentIndex(kind_->findData(rawValue(provider.kind)));
  baseUrl_->setPlaceholderText(provider.kind == ProviderKind::anthropic ? u"https://api.anthropic.com"_s
                                                                        : u"https://api.example.com/v1"_s);
  for (CommittedField* field : fields_) field->follow();
  showSections();
  showIdle();
}

void ProviderSection::showSections() {
  const ProviderKind kind = services_.provider.value().kind;
  const bool isUsed = services_.configuration.mode() == ServiceMode::builtIn;
  const bool isOnline = kind == ProviderKind::openAICompatible || kind == ProviderKind::anthropic;
  heading_->setVisible(isUsed);
  choice_->setVisible(isUsed);
  online_->setVisible(isUsed && isOnline);
  images_->setVisible(isUsed && kind == ProviderKind::openAICompatible);
  command_->setVisible(isUsed && kind == ProviderKind::command);
  check_->setEnabled(kind != ProviderKind::none);
}

void ProviderSection::showIdle() {
  const bool isChosen = services_.provider.value().kind != ProviderKind::none;
  check_->reset(isChosen ? u"Not tested yet."_s : u"Without one the AI tools cannot answer."_s);
}
