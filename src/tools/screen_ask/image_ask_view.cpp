#include "tools/screen_ask/image_ask_view.h"

#include "tools/asking/ask_composer.h"
#include "tools/asking/question_field.h"
#include "tools/screen_ask/capture_preview.h"
#include "tools/screen_ask/image_ask_panel_controller.h"

using namespace Qt::StringLiterals;

ImageAskView::ImageAskView(ImageAskPanelController& controller, QWidget* parent)
    : AskView(controller.model(), controller,
              {u"photo.on.rectangle.angled"_s, u"Image Ask"_s, u"Ask a question about what you selected."_s}, parent),
      controller_(controller) {
  addBeside(new CapturePreview(controller.model()));
  composer().setHint(u"Press ↩ to ask about the selected area"_s);
  follow();
}

std::vector<KeyHint> ImageAskView::hints() const {
  const ImageAskModel& model = controller_.model();
  std::vector<KeyHint> all;
  if (model.latestAnswer()) all.push_back({{u"⌘"_s, u"C"_s}, u"copy answer"_s});
  all.push_back({{u"⌘"_s, u"N"_s}, u"start over"_s});
  all.push_back({{u"esc"_s}, model.pending() ? u"cancel"_s : u"close"_s});
  return all;
}

void ImageAskView::follow() {
  AskView::follow();
  const bool isFollowUp = controller_.model().latestAnswer().has_value();
  composer().field().setPlaceholder(isFollowUp ? u"Ask a follow-up…"_s : u"Ask about this capture…"_s);
}

void ImageAskView::setHasKeyboard(bool hasKeyboard) {
  footer().setNotice(hasKeyboard ? QString() : u"Click this window to use its keys"_s);
}
