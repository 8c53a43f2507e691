#pragma once

#include <QTest>
#include <QThreadPool>

#include "support/generate_image_world.h"
#include "support/strict_multipart.h"

/// The panel over fakes, shown, and a user in front of it.
struct GenerateImageStage : GenerateImageWorld {
  GenerateImageStage() { controller.show(); }

  GenerateImageModel& model() { return controller.model(); }
  bool press(QChar letter, bool shift = false, bool hasSelection = false) {
    return controller.handleKey({.command = true, .shift = shift, .charactersIgnoringModifiers = QString(letter)},
                                hasSelection);
  }
  bool key(std::uint32_t code, bool command = false) {
    return controller.handleKey({.keyCode = code, .command = command});
  }
  void generate(const QString& prompt) {
    model().setPrompt(prompt);
    key(keycode::kReturn, true);
    if (!isSent()) qFatal("nothing was sent");
  }
  /// What is under way in the background comes to its end.
  void settle() {
    for (int turn = 0; turn < 10; ++turn) {
      QThreadPool::globalInstance()->waitForDone();
      QCoreApplication::processEvents();
    }
  }
  bool isSent() {
    return QTest::qWaitFor([this] { return !http.waiting.empty(); }, 2000);
  }
  /// Lets the service answer the oldest request that waits, and waits for what comes of it.
  void answer(const QByteArray& png) {
    http.answer(200, imageAnswer(png));
    if (!QTest::qWaitFor([this] { return !model().isGenerating(); })) qFatal("it is still generating");
  }
  void make(const QString& prompt, const QByteArray& png = pngPicture()) {
    generate(prompt);
    answer(png);
  }
  void snip(const QByteArray& png) {
    regions.select(png);
    const std::size_t before = model().references().size();
    if (!QTest::qWaitFor([&] { return model().references().size() != before || model().isEdit(); }))
      qFatal("not attached");
  }
  std::map<QByteArray, QByteArray> lastForm() const {
    std::map<QByteArray, QByteArray> values;
    const HttpRequest& request = http.sent.back();
    const auto parts = StrictForm::parse(headerOf(request, "Content-Type"), request.body);
    if (!parts) qFatal("not a form");
    for (const FormPart& part : *parts) values[part.filename.isNull() ? part.name : part.filename] = part.content;
    return values;
  }

  GenerateImagePanelController controller{controllerServices(),
                                          [this] { return std::make_unique<CountingPanel>(isPanelUp); }};
};
