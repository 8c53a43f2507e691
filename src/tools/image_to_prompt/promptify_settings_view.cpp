#include "tools/image_to_prompt/promptify_settings_view.h"

#include <QComboBox>
#include <QVBoxLayout>

#include <array>

#include "base/visible_text.h"
#include "core/ui/check_control.h"
#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// Of what the service says.
constexpr qsizetype kShown = 300;
constexpr int kSymbol = 18;

struct Step {
  QLatin1StringView symbol;
  QStringView text;
};

constexpr std::array kSteps = {
    Step{"doc.on.clipboard"_L1, u"Copy any image — a design, a screenshot, something you want to recreate."},
    Step{"wand.and.stars"_L1,
         u"Press the shortcut. The image is sent to Orrin's AI service and reverse-engineered by a vision model."},
    Step{"text.quote"_L1,
         u"A detailed recreation prompt lands on your clipboard — paste it into any image generator or LLM."},
};

QWidget* makeStep(const Step& step) {
  auto* widget = new QWidget;
  auto* row = new QHBoxLayout(widget);
  row->setContentsMargins(0, Theme::kGrid, 0, Theme::kGrid);
  row->setSpacing(Theme::kGrid + Theme::kGrid / 2);
  row->addWidget(new SymbolLabel(step.symbol, kSymbol));
  auto* text = makeDetailLabel(step.text.toString());
  text->setForegroundRole(QPalette::WindowText);
  row->addWidget(text, 1);
  return widget;
}

QWidget* makeSteps() {
  auto* section = new SettingsSection;
  for (const Step& step : kSteps) section->addWide(makeStep(step));
  return section;
}

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
                                       sourceNote_, makeSectionHeading(u"Prompt style"_s), makeStyle(), styleNote_,
                                       makeSectionHeading(u"How it works"_s), makeSteps(), makeTest()})
    column->addWidget(widget);
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
    services_.client.reverseEngineer(promptifyTestImage(), PromptMode::general, job, [done](const auto& prompt) {
      if (prompt)
        done(u"Connected"_s);
      else
        done(std::unexpected(visibleLine(prompt.error().description(), kShown)));
    });
  };
  auto* button = new CheckControl(u"Image to Prompt"_s, run, u"Test Connection"_s);
  auto* section = new SettingsSection;
  button->setRemark(section->addRow(u"Connection"_s, u"Asks for the prompt of a picture of one pixel."_s, button));
  return section;
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
