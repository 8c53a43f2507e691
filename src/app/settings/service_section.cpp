#include "app/settings/service_section.h"

#include <QComboBox>

#include "app/settings/committed_field.h"
#include "app/settings/credential_control.h"
#include "app/settings/provider_section.h"
#include "core/ui/check_control.h"
#include "core/ui/settings_form.h"
#include "services/base_url.h"

using namespace Qt::StringLiterals;

namespace {

QString urlFault(const QString& text) {
  if (text.isEmpty()) return {};
  const auto url = parseBaseUrl(text);
  return url ? QString() : url.error().description();
}

QString standardName(ServiceMode mode) { return mode == ServiceMode::builtIn ? u"Built-in"_s : u"Vantle's service"_s; }

}  // namespace

ServiceSection::ServiceSection(SettingsPage& page, AppContext& context) : QObject(&page), services_(context.services) {
  SettingsSection* section = page.addSection(u"Service"_s);
  addChoice(*section);
  addCheck(*section);
  hosts_ = page.addSection({});
  addHosts(*hosts_);
  connect(&services_.configuration, &StoreBase::changed, this, &ServiceSection::follow);
  connect(&services_.builtIn, &BuiltInService::runningChanged, this, [this] {
    if (!check_->isTesting()) showIdle();
  });
  connect(&services_.credential, &UserCredential::changed, this, &ServiceSection::showIdle);
  follow();
}

void ServiceSection::addChoice(SettingsSection& section) {
  choice_ = new QComboBox;
  choice_->addItems({standardName(services_.configuration.standardMode()), u"Own hosts"_s});
  section.addRow(u"Service in use"_s, u"Hosts your links, answers the AI tools, takes your feedback."_s, choice_);
  connect(choice_, &QComboBox::activated, this, [this](int index) { choose(index == 1); });
}

void ServiceSection::addCheck(SettingsSection& section) {
  check_ = new CheckControl(u"Service"_s, [this](const JobRef& job, const auto& done) { test(job, done); });
  check_->setRemark(section.addRow(u"Status"_s, {}, check_));
}

void ServiceSection::addHosts(SettingsSection& section) {
  fields_ = {addHost(section, u"API URL"_s, &ServiceSettings::api),
             addHost(section, u"Links URL"_s, &ServiceSettings::links)};
  addToken(section);
  auto* credential = new CredentialControl(services_.credential, u"Your credential"_s);
  credential->setRemark(
      section.addRow(u"Your credential"_s, u"For your plan. Kept in the keychain only."_s, credential));
}

CommittedField* ServiceSection::addHost(SettingsSection& section, const QString& title,
                                        QString ServiceSettings::* host) {
  ServiceConfiguration& configuration = services_.configuration;
  auto* field = new CommittedField({.saved = [&configuration, host] { return configuration.value().*host; },
                                    .fault = urlFault,
                                    .take =
                                        [&configuration, host](const QString& text) {
                                          configuration.update([&](ServiceSettings& values) { values.*host = text; });
                                        }},
                                   u"https://"_s);
  field->setRemark(section.addRow(title, {}, field));
  return field;
}

void ServiceSection::addToken(SettingsSection& section) {
  ServiceConfiguration& configuration = services_.configuration;
  auto* field = new CommittedField({.saved = [&configuration] { return configuration.value().token; },
                                    .fault = [](const QString&) { return QString(); },
                                    .take =
                                        [&configuration](const QString& text) {
                                          configuration.update([&](ServiceSettings& values) { values.token = text; });
                                        }},
                                   u"None"_s);
  field->setEchoMode(QLineEdit::Password);
  field->setRemark(section.addRow(u"Token"_s, u"What every tool sends along, if your hosts want one."_s, field));
  fields_.push_back(field);
}

bool ServiceSection::isOwnChosen() const {
  const ServiceConfiguration& configuration = services_.configuration;
  return configuration.value().useOwnHosts.value_or(configuration.mode() == ServiceMode::ownHosts);
}

void ServiceSection::choose(bool isOwn) {
  services_.configuration.update([isOwn](ServiceSettings& values) { values.useOwnHosts = isOwn; });
  if (isOwn && fields_.front()->text().isEmpty()) fields_.front()->setFocus();
}

void ServiceSection::follow() {
  choice_->setCurrentIndex(isOwnChosen() ? 1 : 0);
  hosts_->setVisible(isOwnChosen());
  for (CommittedField* field : fields_) field->follow();
  showIdle();
}

void ServiceSection::showIdle() { check_->reset(idleText()); }

QString ServiceSection::idleText() const {
  const ServiceMode mode = services_.configuration.mode();
  if (isOwnChosen() && mode != ServiceMode::ownHosts)
    return u"Enter the API URL. Until then the tools use: %1."_s.arg(standardName(mode));
  if (mode != ServiceMode::builtIn) return u"Not tested yet."_s;
  return services_.builtIn.isRunning() ? u"Running on this computer."_s
                                       : u"Starts on this computer when a tool needs it, and ends with Vantle."_s;
}

void ServiceSection::test(const JobRef& job, const std::function<void(std::expected<QString, QString>)>& done) {
  services_.quotaClient.refresh(job, [this, done](const auto& result) {
    if (!result)
      done(std::unexpected(result.error().description()));
    else if (services_.configuration.mode() == ServiceMode::builtIn)
      done(u"The built-in service answers."_s);
    else
      done(u"The service answers. Your plan: %1."_s.arg(services_.quota.plan()));
  });
}

void addServiceSections(SettingsPage& page, AppContext& context) {
  new ServiceSection(page, context);
  new ProviderSection(page, context);
}
