#include "app/application.h"

#include <QApplication>
#include <QDir>
#include <QJsonArray>
#include <QSettings>

#include <algorithm>
#include <map>

#include "app/app_context.h"
#include "app/app_windows.h"
#include "app/menu/menu_controller.h"
#include "app/menu/menu_window.h"
#include "app/onboarding/onboarding_window.h"
#include "app/permissions/permissions_window.h"
#include "app/settings/settings_window.h"
#include "app/shortcuts/shortcuts_window.h"
#include "app/tools/ask_ai_kit.h"
#include "app/tools/boilerplates_kit.h"
#include "app/tools/feedback_kit.h"
#include "app/tools/file_drop_kit.h"
#include "app/tools/generate_image_kit.h"
#include "app/tools/inject_md_kit.h"
#include "app/tools/open_project_kit.h"
#include "app/tools/promptify_kit.h"
#include "app/tools/screen_ask_kit.h"
#include "app/tools/transform_kit.h"
#include "app/tools/uplink_kit.h"
#include "app/tools/vibe_history_kit.h"
#include "app/tray_icon.h"
#include "app/updates/updates.h"
#include "app/updates/whats_new_window.h"
#include "app/usage/usage_window.h"
#include "app/warm_up.h"
#include "base/logging.h"
#include "capture/region_selection_controller.h"
#include "capture/selection_overlay_panel.h"
#include "core/net/analytics.h"
#include "core/ui/appearance.h"
#include "core/ui/launcher/tool_launcher_controller.h"
#include "core/ui/launcher/tool_launcher_panel.h"
#include "core/ui/toast/toast_controller.h"
#include "core/ui/toast/toast_panel.h"
#include "services/service_process.h"
#include "tools/ask_ai/quick_question_tool.h"
#include "tools/boilerplates/boilerplates_tool.h"
#include "tools/file_drop/file_drop_tool.h"
#include "tools/frequent_clis/cli_palette_controller.h"
#include "tools/frequent_clis/cli_palette_window.h"
#include "tools/frequent_clis/command_store.h"
#include "tools/frequent_clis/focused_command.h"
#include "tools/frequent_clis/frequent_clis_settings_view.h"
#include "tools/frequent_clis/frequent_clis_tool.h"
#include "tools/generate_image/generate_image_tool.h"
#include "tools/image_to_url/uplink_tool.h"
#include "tools/inject_md/inject_md_tool.h"
#include "tools/keystrokes/command_typer.h"
#include "tools/keystrokes/keystroke_sender.h"
#include "tools/open_project/open_project_tool.h"
#include "tools/screen_ask/image_ask_tool.h"
#include "tools/session_history/vibe_history_tool.h"

using namespace Qt::StringLiterals;

namespace {

QString defaultsFile() {
  return QSettings(QSettings::IniFormat, QSettings::UserScope, u"Vantle"_s, u"Vantle"_s).fileName();
}

/// Ends a deletion that was cut short, and moves an earlier folder into place, before the first store reads from it:
/// what that holds would be lost otherwise.
Folders readyFolders() {
  const Folders folders = Folders::standard();
  if (const auto finished = DataRemoval(folders, defaultsFile()).finish(); !finished)
    qCWarning(lcSettings).noquote() << "Deletion not finished:" << finished.error().description();
  folders.migrateLegacyFolder();
  return folders;
}

}  // namespace

/// In order of construction: each needs only what stands above it.
struct Application::Parts {
  explicit Parts(Application& owner);

  Folders folders = readyFolders();
  QSettings defaults{QSettings::IniFormat, QSettings::UserScope, u"Vantle"_s, u"Vantle"_s};
  SystemClock clock;
  Platform platform = makePlatform();
  SettingsStore settings{folders.file(u"settings.json"_s)};
  AppPreferences preferences{folders.file(u"app-settings.json"_s)};
  Appearance appearance{preferences, *platform.desktopApplication};
  NetworkMonitor network{*platform.networkPath};
  HotkeyCenter hotkeys{*platform.hotkeys, settings, clock};
  QtHttpClient http;
  ServiceProcess builtIn{ServiceProcess::Places::standard(folders), clock};
  Services services{folders, http, *platform.credentials, builtIn, clock};
  InstallIdentity identity{folders.file(u"install-id"_s)};
  Analytics analytics;
  ToastController toasts;
  ToolRegistry registry{{settings, hotkeys, network, analytics, toasts, clock}};
  CommandStore commands{folders, clock};
  KeystrokeSender keystrokes{*platform.keyEvents, *platform.permissions};
  CommandTyper typer{keystrokes, *platform.pasteboard, toasts};
  ToolLauncherController launcher;
  DataEraser eraser;
  RegionSelectionController regions;
  AppWindows windows{*platform.desktopApplication};
  AppContext context;
  CLIPaletteController cliPalette;
  SessionTraceScanner scanner{QDir::homePath()};
  VibeHistoryKit history{context, typer, scanner};
  InjectMDKit injectMD{context, history.settings(), scanner};
  OpenProjectKit openProject{context, history.settings(), scanner};
  BoilerplatesKit boilerplates{context, history.settings(), scanner};
  FileDropKit fileDrop{context, defaults};
  GenerateImageKit generateImage{context, defaults};
  UplinkKit uplink{context};
  TransformKit transform{context, keystrokes};
  PromptifyKit promptify{context};
  FeedbackKit feedback{context, defaults};
  AskAIKit askAI{context};
  ScreenAskKit screenAsk{context};
  SettingsSelection selection;
  Updates updates{context, defaults};
  FocusedCommand focusedCommand;
  AppDelegate delegate;
  TrayIcon tray{{appearance, *platform.trayPanel, clock}};
  MenuController menu;
  AppServer server;
  WarmUp warmUp{clock};
  Job serviceRequests = Job::start();

  std::unique_ptr<OnboardingWindow> makeOnboarding();
};

std::unique_ptr<OnboardingWindow> Application::Parts::makeOnboarding() {
  auto window = std::make_unique<OnboardingWindow>(context);
  connect(&launcher, &ToolLauncherController::shown, &window->model(), &OnboardingModel::launcherShown);
  return window;
}

Application::Parts::Parts(Application& owner)
    : analytics({preferences, network, identity, *platform.systemInfo,
                 [this](const QJsonObject& event) { services.events.send(event); }}),
      toasts(
          [this](ToastController& controller) {
            return std::make_unique<ToastPanel>(controller, *platform.panelWindow, *platform.systemInfo, clock);
          },
          preferences, *platform.sounds, clock),
      launcher({registry, network, *platform.sounds, clock},
               [this](ToolLauncherController& controller) {
                 return std::make_unique<ToolLauncherPanel>(
                     controller, ToolLauncherPanel::Services{*platform.panelWindow, *platform.systemInfo, defaults});
               }),
      eraser({*platform.credentials, *platform.loginItem, owner}, DataRemoval(folders, defaults.fileName()),
             {UserCredential::kServiceAccount, UserCredential::kProviderAccount}),
      regions(*platform.screenGrabber, toasts,
              [this](SelectionOverlay::Request request) {
                return std::make_unique<SelectionOverlayPanel>(std::move(request), *platform.panelWindow,
                                                               *platform.systemInfo);
              }),
      context{folders, platform, clock,    settings, preferences, network,   hotkeys, registry,
              toasts,  owner,    launcher, windows,  services,    analytics, eraser,  regions},
      cliPalette({commands, typer, clock, owner, launcher},
                 [this] { return std::make_unique<CLIPaletteWindow>(*platform.panelWindow, cliPalette); }),
      delegate({settings, analytics, registry, hotkeys, *platform.permissions, commands}, owner.effects()),
      menu({registry, hotkeys, network, *platform.sounds, clock, windows},
           [this](MenuController& controller) {
             return std::make_unique<MenuWindow>(controller, *platform.panelWindow, [this] { return tray.geometry(); });
           }),
      server([&owner](const QJsonObject& request, const AppServer::Reply& reply) { owner.answer(request, reply); }) {
  windows.add(AppWindow::settings, [this] { return std::make_unique<SettingsWindow>(context, selection); });
  windows.add(AppWindow::usage, [this] { return std::make_unique<UsageWindow>(services.quota, services.quotaClient); });
  windows.add(AppWindow::whatsNew, [this] {
    return std::make_unique<WhatsNewWindow>(updates.notice(), *platform.updater, WhatsNewWindow::shippedChangelog());
  });
  windows.add(AppWindow::keyboardShortcuts, [this] { return std::make_unique<ShortcutsWindow>(context); });
  windows.add(AppWindow::onboarding, [this] { return makeOnboarding(); });
  windows.add(AppWindow::permissions, [this] { return std::make_unique<PermissionsWindow>(context); });
}

Application::Application() : parts_(std::make_unique<Parts>(*this)) {
  connect(&parts_->tray, &TrayIcon::activated, &parts_->menu, &MenuController::iconActivated);
  connect(&parts_->boilerplates.palette(), &BoilerplatesPaletteController::created, this,
          [&palette = parts_->openProject.palette()](const QString& path, bool isWaiting) {
            palette.add(path);
            if (isWaiting) palette.offer(path);
          });
  connect(&parts_->menu, &MenuController::quitChosen, qApp, &QCoreApplication::quit);
  connect(qApp, &QCoreApplication::aboutToQuit, this, &Application::terminate);
}

Application::~Application() {
  if (!startsAnew_) return;
  const DataRemoval removal(parts_->folders, parts_->defaults.fileName());
  // Whoever still holds a file open writes to what is deleted after it.
  parts_.reset();
  if (const auto finished = removal.finish(); !finished)
    qCWarning(lcSettings).noquote() << "Deletion not finished:" << finished.error().description();
}

bool Application::start() {
  if (!parts_->server.listen()) return false;
  parts_->delegate.didFinishLaunching(makeTools());
  parts_->tray.show();
  warmUp();
  return true;
}

void Application::warmUp() {
  Parts& parts = *parts_;
  std::deque<WarmUp::Step> steps = {[&parts] { parts.cliPalette.prepare(); }, [&parts] { parts.launcher.prepare(); }};
  for (ToolKit* kit : std::initializer_list<ToolKit*>{
           &parts.history, &parts.injectMD, &parts.openProject, &parts.boilerplates, &parts.fileDrop, &parts.transform,
           &parts.feedback, &parts.generateImage, &parts.promptify, &parts.askAI})
    steps.emplace_back([kit] { kit->prepare(); });
  parts.warmUp.begin(std::move(steps));
}

std::vector<std::unique_ptr<Tool>> Application::makeTools() {
  Parts& parts = *parts_;
  const std::map<QLatin1StringView, ToolKit*> kits = {{kVibeHistoryID, &parts.history},
                                                      {kInjectMDID, &parts.injectMD},
                                                      {kOpenProjectID, &parts.openProject},
                                                      {kBoilerplatesID, &parts.boilerplates},
                                                      {kBulkUploadID, &parts.fileDrop},
                                                      {kGenerateImageID, &parts.generateImage},
                                                      {kUplinkID, &parts.uplink},
                                                      {kPromptifyID, &parts.promptify},
                                                      {kAITextTransformID, &parts.transform},
                                                      {kFeedbackID, &parts.feedback},
                                                      {kQuickQuestionID, &parts.askAI},
                                                      {kImageAskID, &parts.screenAsk}};
  std::vector<std::unique_ptr<Tool>> tools;
  for (const ToolInfo& info : toolTable()) {
    const auto kit = kits.find(info.id);
    if (kit != kits.end())
      tools.push_back(kit->second->makeTool());
    else if (info.id == kFrequentCLIsID)
      tools.push_back(std::make_unique<FrequentCLIsTool>(parts.cliPalette, frequentCLIsSettings()));
    else if (info.id == kSuggestID)
      tools.push_back(parts.feedback.makeSuggestTool());
    else
      qFatal("The tool %s is in the table and nowhere else", info.id.data());
  }
  return tools;
}

SettingsViewFactory Application::frequentCLIsSettings() {
  return [this](QWidget* parent) {
    return new FrequentCLIsSettingsView(parts_->commands, parts_->focusedCommand, parent);
  };
}

AppDelegate::Effects Application::effects() {
  return {.applyAppearance = [this] { parts_->appearance.apply(); },
          .run = [this](AppAction action) { run(action); },
          .announceUpdate = [this] { announceUpdate(); },
          .showFirstRun = [this](AppDelegate::FirstRun) { parts_->windows.openWindow(AppWindow::onboarding); }};
}

void Application::run(AppAction action) {
  switch (action) {
    case AppAction::openSettings:
      openSettings();
      return;
    case AppAction::openToolSettings:
      openSettings(SettingsTab::tools);
      return;
    case AppAction::openShortcutSettings:
      openSettings(SettingsTab::shortcuts);
      return;
    case AppAction::toggleLauncher:
      parts_->launcher.toggle();
      return;
  }
}

void Application::openSettings() { parts_->windows.openWindow(AppWindow::settings); }

void Application::openSettings(SettingsTab tab) {
  parts_->selection.setTab(tab);
  openSettings();
}

void Application::openToolSettings(const QString& toolID) {
  parts_->selection.setToolID(toolID);
  openSettings(SettingsTab::tools);
}

void Application::openCommandSettings(const QUuid& commandID) {
  parts_->focusedCommand.set(commandID);
  openToolSettings(kFrequentCLIsID);
}

void Application::deleteDataAndStartAnew() {
  startsAnew_ = true;
  QCoreApplication::exit(kStartAnew);
}

/// No event comes after this one, so that nothing is saved once the data has been put aside.
void Application::terminate() {
  if (!startsAnew_) {
    parts_->delegate.willTerminate();
    return;
  }
  parts_->generateImage.close();
  const DataRemoval removal(parts_->folders, parts_->defaults.fileName());
  if (const auto removed = removal.putAside(); !removed)
    qCWarning(lcSettings).noquote() << removed.error().description();
}

void Application::announceUpdate() {
  const bool isTrusted = parts_->platform.permissions->isAccessibilityTrusted();
  const auto firstRun = AppDelegate::firstRun(parts_->settings.value(), isTrusted);
  if (parts_->updates.start(firstRun != AppDelegate::FirstRun::nothing))
    parts_->windows.openWindow(AppWindow::whatsNew);
}

void Application::summon(const QString& target) {
  // As their shortcuts do: the launcher goes when it is there.
  const auto own = std::ranges::find(kAppShortcuts, target, &AppShortcut::target);
  const auto named = std::ranges::find(kAppWindowNames, target, &AppWindowName::name);
  if (own != kAppShortcuts.end())
    run(own->action);
  else if (named != kAppWindowNames.end())
    parts_->windows.openWindow(named->window);
  else if (target == "menu"_L1)
    parts_->menu.toggle();
  else
    parts_->registry.summon(target);
}

void Application::answer(const QJsonObject& request, const AppServer::Reply& reply) {
  if (request.value("do"_L1).toString() == "service"_L1)
    locateService(reply);
  else
    reply(done(request));
}

/// The built-in service for a command, so that the links it makes open as long as this program runs.
void Application::locateService(const AppServer::Reply& reply) {
  parts_->services.builtIn.locate(parts_->serviceRequests, [reply](const auto& location) {
    if (location)
      reply({{u"url"_s, location->links.toString()}, {u"token"_s, QString::fromUtf8(location->serviceToken)}});
    else
      reply({{u"error"_s, location.error().description()}});
  });
}

/// What a command has written, it says so, and nobody has to start this program anew for it.
void Application::reload() {
  parts_->preferences.reload();
  parts_->services.configuration.reload();
  parts_->services.credential.forget();
  parts_->services.provider.reload();
  parts_->services.providerKey.forget();
  parts_->uplink.settings().reload();
  parts_->transform.settings().reload();
  parts_->promptify.settings().reload();
}

QJsonObject Application::done(const QJsonObject& request) {
  const QString what = request.value("do"_L1).toString();
  if (what == "doctor"_L1) return doctorAnswer();
  if (what == "forward"_L1)
    openSettings();
  else if (what == "reload"_L1)
    reload();
  else if (what == "summon"_L1)
    summon(request.value("what"_L1).toString());
  else
    return {{u"error"_s, u"there is no such request"_s}};
  return {{u"ok"_s, true}};
}

QJsonObject Application::doctorAnswer() const {
  QJsonArray refused;
  for (const HotkeyCenter::Refused& entry : parts_->hotkeys.refused()) {
    refused.append(QJsonObject{{u"owner"_s, ownerName(entry)},
                               {u"hotkey"_s, encode(entry.hotkey)},
                               {u"reason"_s, entry.refusal.description()}});
  }
  const bool isLimited = !parts_->platform.permissions->shortcutsRemedy().isEmpty();
  return {{u"refused"_s, refused}, {u"shortcutsLimited"_s, isLimited}};
}

QString Application::ownerName(const HotkeyCenter::Refused& entry) const {
  if (const Tool* tool = parts_->registry.tool(entry.toolID)) return tool->name();
  const auto own = std::ranges::find(kAppShortcuts, entry.hotkey, &AppShortcut::hotkey);
  return own == kAppShortcuts.end() ? QString() : QString(own->name);
}
