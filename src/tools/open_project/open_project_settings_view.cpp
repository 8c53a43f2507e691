#include "tools/open_project/open_project_settings_view.h"

#include <QComboBox>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include "core/ui/settings_form.h"
#include "core/ui/store_switch.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kFieldWidth = 280;

}  // namespace

OpenProjectSettingsView::OpenProjectSettingsView(OpenProjectStore& store, InstalledPresets& installed, QWidget* parent)
    : QWidget(parent), store_(store), installed_(installed) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(makeHeading(u"Open with"_s));
  auto* command = new SettingsSection;
  addCommand(*command);
  column->addWidget(command);
  column->addSpacing(Theme::kGrid);
  column->addWidget(makeHeading(u"Agent"_s));
  auto* agent = new SettingsSection;
  addAgent(*agent);
  column->addWidget(agent);
  column->addStretch(1);
  connect(&store_, &StoreBase::changed, this, &OpenProjectSettingsView::follow);
  connect(&installed_, &InstalledPresets::changed, this, &OpenProjectSettingsView::greyMissing);
  installed_.look();
  greyMissing();
  follow();
}

void OpenProjectSettingsView::addCommand(SettingsSection& section) {
  preset_ = new QComboBox;
  for (const LaunchPreset& preset : installed_.presets()) preset_->addItem(preset.name);
  preset_->addItem(u"Custom"_s);
  section.addRow(u"Program"_s, {}, preset_);
  command_ = makeField(&OpenProjectSettings::command, u"Command"_s);
  section.addRow(u"Command"_s, u"%path: its folder, %arg: its name"_s, command_);
  section.addRow(u"Choose each time"_s, u"Lists these programs after you pick a project."_s,
                 makeStoreSwitch(store_, &OpenProjectSettings::askForCommand, u"Choose each time"_s));
  section.addRow(u"Copy the resume command"_s, u"Puts the last session’s resume command on the clipboard."_s,
                 makeStoreSwitch(store_, &OpenProjectSettings::copyResume, u"Copy the resume command"_s));
  connect(preset_, &QComboBox::activated, this, [this](int index) {
    const auto chosen = static_cast<std::size_t>(index);
    if (chosen >= installed_.presets().size()) {
      command_->setFocus();
      return command_->selectAll();
    }
    store_.update([&](OpenProjectSettings& values) { values.command = installed_.presets()[chosen].command; });
  });
}

void OpenProjectSettingsView::addAgent(SettingsSection& section) {
  runsAgent_ = makeStoreSwitch(store_, &OpenProjectSettings::autoRunAgent, u"Start an agent"_s);
  agentRemark_ = section.addRow(u"Start an agent"_s, u"Runs in the new terminal."_s, runsAgent_);
  agent_ = makeField(&OpenProjectSettings::agentCommand, u"Agent command"_s);
  section.addRow(u"Agent command"_s, {}, agent_);
  yolo_ = makeStoreSwitch(store_, &OpenProjectSettings::agentYolo, u"Skip permission questions"_s);
  yoloRemark_ = section.addRow(u"Skip permission questions"_s,
                               u"Adds the agent’s YOLO flag: it then acts without asking."_s, yolo_);
}

QLineEdit* OpenProjectSettingsView::makeField(QString OpenProjectSettings::* text, const QString& name) {
  auto* field = new QLineEdit;
  field->setFixedWidth(kFieldWidth);
  field->setAccessibleName(name);
  connect(field, &QLineEdit::editingFinished, this, [this, field, text] {
    if (field->isModified())
      store_.update([&](OpenProjectSettings& values) { values.*text = field->text().trimmed(); });
    field->setModified(false);
    follow();
  });
  return field;
}

QString OpenProjectSettingsView::command() const {
  const QString& command = store_.value().command;
  return command.isEmpty() ? installed_.presets().front().command : command;
}

void OpenProjectSettingsView::follow() {
  const auto& presets = installed_.presets();
  const LaunchPreset* preset = presetOf(presets, command());
  preset_->setCurrentIndex(static_cast<int>(preset ? preset - presets.data() : std::ssize(presets)));
  const auto show = [](QLineEdit* field, const QString& text) {
    if (!field->isModified() && field->text() != text) field->setText(text);
  };
  show(command_, command());
  show(agent_, store_.value().agentCommand);
  followAgent(preset);
}

void OpenProjectSettingsView::followAgent(const LaunchPreset* preset) {
  const OpenProjectSettings& settings = store_.value();
  const bool opensTerminal = settings.askForCommand || (preset && preset->isTerminal());
  const bool starts = opensTerminal && settings.autoRunAgent;
  const bool knowsFlag = !yoloFlag(settings.agentCommand).isEmpty();
  const bool namesAgent = !settings.agentCommand.trimmed().isEmpty();
  runsAgent_->setEnabled(opensTerminal);
  agent_->setEnabled(starts);
  yolo_->setEnabled(starts && knowsFlag);
  agentRemark_->showHint(opensTerminal
                             ? QString()
                             : u"Only available when opening a terminal — pick %1 under “Open with” above."_s.arg(
                                   terminalNames(installed_.presets())));
  yoloRemark_->showHint(!starts || knowsFlag || !namesAgent
                            ? QString()
                            : u"No known YOLO flag for this agent — add its skip-permissions flag to "
                              u"the command yourself."_s);
}

void OpenProjectSettingsView::greyMissing() {
  auto* rows = qobject_cast<QStandardItemModel*>(preset_->model());
  for (std::size_t index = 0; rows && index < installed_.presets().size(); ++index) {
    const QString& name = installed_.presets()[index].name;
    const bool isInstalled = installed_.isInstalled(name);
    QStandardItem* row = rows->item(static_cast<int>(index));
    row->setEnabled(isInstalled);
    row->setToolTip(isInstalled ? QString() : u"Not installed"_s);
  }
}
