#pragma once

#include <QWidget>

#include <expected>
#include <functional>

#include "base/job.h"

class QuickQuestionClient;
class SystemInfo;

/// The tool's page in the settings: how to ask, and whether the service answers.
class QuickQuestionSettingsView final : public QWidget {
  Q_OBJECT

 public:
  QuickQuestionSettingsView(QuickQuestionClient& client, const SystemInfo& system, QWidget* parent = nullptr);

 private:
  void test(const JobRef& job, const std::function<void(std::expected<QString, QString>)>& done);
  QWidget* makeTest();

  QuickQuestionClient& client_;
};
