#include "tools/image_to_prompt/promptify_settings_view.h"

#include <QComboBox>
#include <QVBoxLayout>

#include <array>

#include "core/ui/connection_test.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kSteps = {
    HowItWorksStep{u"doc.on.clipboard", u"Copy any image — a design, a screenshot, something you want to recreate."},
    HowItWorksStep{
        u"wand.and.stars",
        u"Press the shortcut. The image is sent to Orrin's AI service and reverse-engineered by a vision model."},
    HowItWorksStep{u"text.quote",
                   u"A detailed recreation prompt lands on your clipboard — paste it into any image generator or LLM."},
};

QLabel* makeSectionHeading(const QString& text) {
  QLabel* heading = makeHeading(text);
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  return heading;
}

}  // namespace

PromptifySettingsView::PromptifySettingsView(Services services, QWidget* parent)
    : QWidget(parent),
      services_(services),
      source_(new QComboBox),
      sourceNote_(makeDetailLabel({})),
      style_(new QComboBox),
      styleNote_(makeDetailLabel(
          u"A quick-pick appears in the center of the screen each time so you can choose the style for that image."_s)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  const QString note =
      u"Images only leave %1 when you press the shortcut — never automatically. Processing takes a "
      "few seconds per image."_s.arg(services_.system.thisComputer());
  for (QWidget* widget :
       std::initializer_list<QWidget*>{makeDetailLabel(note), makeSectionHeading(u"Image source"_s), makeSource(),
                                       sourceNote_, makeSectionHeading(u"Prompt style"_s), makeStyle(), styleNote_})
    column->addWidget(widget);
  addHowItWorks(*column, kSteps);
  column->addWidget(makeTest());
  column->addStretch(1);
  connect(&services_.settings, &StoreBase::changed, this, &PromptifySettingsView::follow);
  follow();
}

QWidget* PromptifySettingsView::makeSource() {
  source_->addItem(u"Get Image from Clipboard"_s, rawValue(ImageSource::clipboard));
  source_->addItem(u"Get Image from Screenshot"_s, rawValue(ImageSource::liveSelection));
  connect(source_, &QComboBox::activated, this, [this] {
    const auto chosen = imageSource(source_->currentData().toString());
    services_.settings.update([chosen](PromptifySettings& settings) { settings.source = chosen.value(); });
  });
  auto* section = new SettingsSection;
  section->addRow(u"When I press the shortcut"_s, {}, source_);
  return section;
}

QWidget* PromptifySettingsView::makeStyle() {
  for (const PromptStyleSetting style : kPromptStyles) style_->addItem(label(style), rawValue(style));
  connect(style_, &QComboBox::activated, this, [this] {
    const auto chosen = promptStyle(style_->currentData().toString());
    services_.settings.update([chosen](PromptifySettings& settings) { settings.style = chosen.value(); });
  });
  auto* section = new SettingsSection;
  section->addRow(u"Style"_s, {}, style_);
  return section;
}

QWidget* PromptifySettingsView::makeTest() {
  const auto run = [this](const JobRef& job, const CheckControl::Done& done) {
    const auto connected = [](const QString&) { return u"Connected"_s; };
    services_.client.reverseEngineer(promptifyTestImage(), PromptMode::general, job, tellingTest(done, connected));
  };
  return makeConnectionTest(u"Image to Prompt"_s, u"Asks for the prompt of a picture of one pixel."_s, run);
}

void PromptifySettingsView::follow() {
  const PromptifySettings& settings = services_.settings.value();
  source_->setCurrentIndex(source_->findData(rawValue(settings.source)));
  style_->setCurrentIndex(style_->findData(rawValue(settings.style)));
  QString drag = u"Drag a region on screen; it's captured and turned into a prompt."_s;
  if (services_.permissions.hasSettingsPage(Permission::screenRecording))
    drag += u" Requires Screen Recording permission."_s;
  sourceNote_->setText(drag);
  sourceNote_->setVisible(settings.source == ImageSource::liveSelection);
  styleNote_->setVisible(settings.style == PromptStyleSetting::ask);
}
