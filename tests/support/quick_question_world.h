#pragma once

#include <QBuffer>

#include "support/ask_world.h"
#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/fake_region_selector.h"
#include "tools/ask_ai/quick_question_panel_controller.h"

/// Ask AI over fakes; the test is the service and the user.
struct QuickQuestionWorld : AskWorld {
  using Factory = QuickQuestionPanelController::PanelFactory;

  explicit QuickQuestionWorld(Factory makePanel = SilentPanel::make)
      : controller({client, pasteboard, clock, regions, permissions, system, launcher,
                    [this](const auto& chosen) { choices.push_back(chosen); }},
                   std::move(makePanel)) {
    useOwnHosts();
  }

  static QByteArray png(int width = 40, int height = 30, const char* format = "PNG") {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(47, 111, 237));
    QByteArray bytes;
    QBuffer file(&bytes);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, format)) qFatal("no picture");
    return bytes;
  }
  QuickQuestionModel& model() { return controller.model(); }
  bool press(QChar letter, bool command = true) { return controller.handleKey(::letter(letter, command)); }
  void ask(const QString& question) {
    model().setQuestion(question);
    controller.submit();
  }
  /// Asks, and lets the service answer.
  bool converse(const QString& question, const QString& answer) {
    ask(question);
    if (!isWaiting()) return false;
    stream(done(answer));
    return model().latestAnswer() == answer;
  }
  bool attach(std::size_t count) {
    while (model().attachments().size() < count) {
      const std::size_t before = model().attachments().size();
      controller.attachImage(QImage::fromData(png()));
      if (!QTest::qWaitFor([&] { return model().attachments().size() > before; })) return false;
    }
    return true;
  }

  FakePasteboard pasteboard;
  FakeRegionSelector regions;
  FakePermissions permissions;
  FakeSystem system;
  FakeLauncherOpener launcher;
  std::vector<std::function<void(QList<QUrl>)>> choices;
  QuickQuestionClient client{answers()};
  QuickQuestionPanelController controller;
};
