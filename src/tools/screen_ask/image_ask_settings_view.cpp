#include "tools/screen_ask/image_ask_settings_view.h"

#include <QVBoxLayout>

#include "base/visible_text.h"
#include "capture/png_encoding.h"
#include "core/ui/check_control.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/screen_ask/image_ask_client.h"

using namespace Qt::StringLiterals;

namespace {

/// Of an answer, and of what the service says in place of one.
constexpr qsizetype kAnswerShown = 80;
constexpr qsizetype kErrorShown = 300;

QStringList notes() {
  return {
      u"Press the shortcut, drag over any part of the screen, and ask a question about it — the answer appears in place."_s,
      u"Keep typing to ask follow-ups about the same capture. ⌘C copies the latest answer, ⌘N starts over."_s,
      u"Captures are sent only to answer your question and are not stored."_s};
}

/// A plain picture, for finding out whether questions about pictures are answered.
QByteArray testImage() {
  QImage picture(64, 64, QImage::Format_RGB32);
  picture.fill(Qt::white);
  return pngOf(picture);
}

}  // namespace

ImageAskSettingsView::ImageAskSettingsView(ImageAskClient& client, QWidget* parent) : QWidget(parent), client_(client) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  addHowItWorks(*column, notes());
  QLabel* heading = makeHeading(u"Service"_s);
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  column->addWidget(heading);
  column->addWidget(makeTest());
  column->addStretch(1);
}

QWidget* ImageAskSettingsView::makeTest() {
  auto* button = new CheckControl(
      u"Image Ask"_s, [this](const JobRef& job, const auto& done) { test(job, done); }, u"Test Connection"_s);
  auto* section = new SettingsSection;
  button->setRemark(section->addRow(u"Connection"_s, u"Sends a blank picture and asks for a single word."_s, button));
  return section;
}

void ImageAskSettingsView::test(const JobRef& job, const std::function<void(std::expected<QString, QString>)>& done) {
  const auto say = [done](const AskOutcome& outcome) {
    if (outcome)
      done(visibleLine(*outcome, kAnswerShown));
    else
      done(std::unexpected(visibleLine(outcome.error().description(), kErrorShown)));
  };
  client_.ask({u"Reply with the single word: pong"_s}, testImage(), {job, {}, say});
}
