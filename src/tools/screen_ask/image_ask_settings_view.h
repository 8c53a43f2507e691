#pragma once

#include <QWidget>

#include <expected>
#include <functional>

#include "base/job.h"

class ImageAskClient;

/// The tool's page in the settings: how to ask, and whether the service answers.
class ImageAskSettingsView final : public QWidget {
  Q_OBJECT

 public:
  explicit ImageAskSettingsView(ImageAskClient& client, QWidget* parent = nullptr);

 private:
  void test(const JobRef& job, const std::function<void(std::expected<QString, QString>)>& done);
  QWidget* makeTest();

  ImageAskClient& client_;
};
