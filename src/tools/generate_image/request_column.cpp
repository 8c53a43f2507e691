#include "tools/generate_image/request_column.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/primary_button.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"
#include "tools/generate_image/generate_image_panel_controller.h"
#include "tools/generate_image/option_bar.h"
#include "tools/generate_image/prompt_editor.h"
#include "tools/generate_image/reference_row.h"

using namespace Qt::StringLiterals;

namespace {

QPushButton* makeButton(const QString& text, const QString& tip) {
  auto* button = new QPushButton(text);
  // The window's keys reach all of them; the prompt keeps the focus.
  button->setFocusPolicy(Qt::NoFocus);
  button->setToolTip(tip);
  return button;
}

template <class Value>
QStringList labels(std::span<const ImageChoice<Value>> choices) {
  QStringList labels;
  for (const auto& choice : choices) labels.append(choice.label);
  return labels;
}

template <class Value>
int indexOf(std::span<const ImageChoice<Value>> choices, Value value) {
  return static_cast<int>(std::ranges::find(choices, value, &ImageChoice<Value>::value) - choices.begin());
}

}  // namespace

RequestColumn::RequestColumn(GenerateImagePanelController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      editor_(new PromptEditor),
      references_(new ReferenceRow(controller.model())),
      generate_(new PrimaryButton(u"Generate"_s)) {
  generate_->setFocusPolicy(Qt::NoFocus);
  generate_->setProminent(true);
  generate_->setToolTip(keyText(u"Generate the image (⌘↩)"_s));
  makeOptions();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(editor_, 1);
  column->addWidget(references_);
  column->addWidget(makeAttachButtons());
  column->addWidget(size_);
  column->addWidget(quality_);
  column->addWidget(generate_);
  GenerateImageModel& model = controller_.model();
  connect(editor_, &QPlainTextEdit::textChanged, this, [this, &model] { model.setPrompt(editor_->toPlainText()); });
  connect(&controller_, &GenerateImagePanelController::textPasted, editor_, &QPlainTextEdit::insertPlainText);
  connect(generate_, &QPushButton::clicked, &controller_, [this, &model] {
    if (model.isGenerating())
      controller_.cancel();
    else
      controller_.generate();
  });
}

void RequestColumn::makeOptions() {
  size_ = new OptionBar(u"Shape"_s, keyText(u"⌘1"_s), labels(imageSizes()));
  quality_ = new OptionBar(u"Quality"_s, keyText(u"⌘2"_s), labels(imageQualities()));
  connect(size_, &OptionBar::chosen, this, [this](int index) {
    ImageOptions options = controller_.model().options();
    options.size = imageSizes()[static_cast<std::size_t>(index)].value;
    controller_.setOptions(options);
  });
  connect(quality_, &OptionBar::chosen, this, [this](int index) {
    ImageOptions options = controller_.model().options();
    options.quality = imageQualities()[static_cast<std::size_t>(index)].value;
    controller_.setOptions(options);
  });
}

QWidget* RequestColumn::makeAttachButtons() {
  snip_ = makeButton(u"Add Snip"_s, keyText(u"Draw a box on screen to attach it (⌘S)"_s));
  attach_ = makeButton(u"Attach…"_s, keyText(u"Attach an image file (⌘O), or paste one (⌘V)"_s));
  auto* edit = makeButton(u"Edit a Snip"_s, keyText(u"Draw a box on screen and say what should change (⇧⌘E)"_s));
  connect(snip_, &QPushButton::clicked, &controller_, &GenerateImagePanelController::addSnip);
  connect(attach_, &QPushButton::clicked, &controller_, &GenerateImagePanelController::attachFiles);
  connect(edit, &QPushButton::clicked, &controller_, &GenerateImagePanelController::editSnip);
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins({});
  row->setSpacing(Theme::kGrid);
  for (QPushButton* button : {snip_, attach_, edit}) row->addWidget(button, 1);
  return buttons;
}

void RequestColumn::follow() {
  const GenerateImageModel& model = controller_.model();
  editor_->follow(model.prompt());
  editor_->setPlaceholderText(model.isEdit() ? u"What should change?"_s : u"Describe an image…"_s);
  references_->follow();
  snip_->setEnabled(model.canAttach());
  attach_->setEnabled(model.canAttach());
  size_->setCurrent(indexOf(imageSizes(), model.options().size));
  quality_->setCurrent(indexOf(imageQualities(), model.options().quality));
  generate_->setText(model.isGenerating() ? u"Cancel"_s : model.isEdit() ? u"Change the Image"_s : u"Generate"_s);
  generate_->setProminent(!model.isGenerating());
}
