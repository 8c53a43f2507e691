#include "tools/text_transform/ai_text_transform_settings_view.h"

#include <QComboBox>
#include <QVBoxLayout>

#include <array>

#include "base/visible_text.h"
#include "core/ui/connection_test.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// Of a result.
constexpr qsizetype kShownResult = 80;
constexpr std::array kSteps = {
    HowItWorksStep{u"text.cursor", u"Select text in any app, then press the shortcut."},
    HowItWorksStep{u"wand.and.stars", u"Pick a transformation — or Custom Prompt to write your own instruction."},
    HowItWorksStep{u"arrow.left.arrow.right",
                   u"The rewrite replaces your selection or lands on your clipboard, per the setting above."},
};

QLabel* makeLaterHeading(const QString& text) {
  QLabel* heading = makeHeading(text);
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  return heading;
}

}  // namespace

AITextTransformSettingsView::AITextTransformSettingsView(Services services, QWidget* parent)
    : QWidget(parent),
      services_(services),
      output_(new QComboBox),
      replaceNote_(makeDetailLabel(u"The rewrite types over your selection. Works in most editors and terminals; a few "
                                   u"apps drop the selection when another window takes focus."_s)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(makeDetailLabel(privacyNote()));
  column->addWidget(makeLaterHeading(u"Result"_s));
  column->addWidget(makeResult());
  column->addWidget(replaceNote_);
  addHowItWorks(*column, kSteps);
  column->addWidget(makeLaterHeading(u"Service"_s));
  column->addWidget(makeTest());
  column->addStretch(1);
  connect(&services_.settings, &StoreBase::changed, this, &AITextTransformSettingsView::follow);
  follow();
}

QString AITextTransformSettingsView::privacyNote() const {
  QString note = u"Your text only leaves %1 when you trigger a transform."_s.arg(services_.system.thisComputer());
  if (!services_.permissions.hasSettingsPage(Permission::accessibility)) return note;
  return note + u" Requires Accessibility to read the selection."_s;
}

QWidget* AITextTransformSettingsView::makeResult() {
  for (const TransformOutputNames& names : transformOutputs()) output_->addItem(names.label, QString(names.rawValue));
  connect(output_, &QComboBox::activated, this, [this] {
    const auto chosen = transformOutput(output_->currentData().toString());
    services_.settings.update([chosen](AITextTransformSettings& settings) { settings.output = chosen.value(); });
  });
  auto* section = new SettingsSection;
  section->addRow(u"When done"_s, {}, output_);
  return section;
}

QWidget* AITextTransformSettingsView::makeTest() {
  const auto run = [this](const JobRef& job, const CheckControl::Done& done) {
    const auto beginning = [](const QString& text) { return visibleLine(text.trimmed(), kShownResult); };
    services_.client.transform({u"i has three cat"_s, TextTransformMode::fixGrammar}, job,
                               tellingTest(done, beginning));
  };
  return makeConnectionTest(u"AI Text Transform"_s, u"Has a short sentence corrected."_s, run);
}

void AITextTransformSettingsView::follow() {
  const TransformOutput output = services_.settings.value().output;
  output_->setCurrentIndex(output_->findData(rawValue(output)));
  replaceNote_->setVisible(output == TransformOutput::replace);
}
