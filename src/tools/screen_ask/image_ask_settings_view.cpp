#include "tools/screen_ask/image_ask_settings_view.h"

#include <QImage>

#include "capture/png_encoding.h"
#include "platform/command_key.h"
#include "tools/screen_ask/image_ask_client.h"

using namespace Qt::StringLiterals;

namespace {

QStringList notes() {
  return {
      u"Press the shortcut, drag over any part of the screen, and ask a question about it — the answer appears in place."_s,
      keyText(u"Keep typing to ask follow-ups about the same capture. ⌘C copies the latest answer, ⌘N starts over."_s),
      u"Captures are sent only to answer your question and are not stored."_s};
}

/// A plain picture, for finding out whether questions about pictures are answered.
QByteArray testImage() {
  QImage picture(64, 64, QImage::Format_RGB32);
  picture.fill(Qt::white);
  return pngOf(picture);
}

}  // namespace

ImageAskSettingsView::ImageAskSettingsView(ImageAskClient& client, QWidget* parent)
    : AskSettingsView(
          {notes(), u"Image Ask"_s, u"Sends a blank picture and asks for a single word."_s},
          [&client](const auto& question, const auto& call) { client.ask(question, testImage(), call); }, parent) {}
