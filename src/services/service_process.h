#pragma once

#include <QProcess>

#include <chrono>
#include <optional>
#include <vector>

#include "base/clock.h"
#include "core/settings/folders.h"
#include "services/built_in_service.h"

/// The built-in service as a child process: started at its first use, told its port and token over a pipe, told the AI
/// provider over another, started anew
/// at the next use after it has died, ended with this object. It ends by itself when this process does.
class ServiceProcess final : public BuiltInService {
  Q_OBJECT

 public:
  struct Places {
    QString program;
    /// Its data and its log.
    QString folder;

    /// "service" in the data folder, and the program that came with this one.
    static Places standard(const Folders& folders);
    /// Of an application in that folder: the copy in "../libexec/vantle" when it is installed, else the one beside it.
    static QString programFor(const QString& applicationFolder);
  };

  ServiceProcess(Places places, Clock& clock) : places_(std::move(places)), clock_(clock) {}
  ~ServiceProcess() override;

  void locate(const JobRef& job, Answer answer) override;
  bool isRunning() const override { return location_.has_value(); }
  void setBrief(const Brief& brief) override { brief_ = brief; }
  void briefAnew() override;
  /// 0 when it does not run.
  qint64 processId() const { return process_ ? process_->processId() : 0; }

 private:
  void begin();
  void start();
  /// What it says on its standard output, a line each: where it is, then that it has taken what it was told.
  void read();
  void take(const QJsonObject& line);
  void greet(const QJsonObject& greeting);
  void tell(const QJsonObject& brief);
  void briefed();
  void fail(const QString& text);
  void end();
  void answerAll(const std::expected<ServiceLocation, ServiceError>& result);

  Places places_;
  Clock& clock_;
  std::unique_ptr<QProcess> process_;
  std::optional<ServiceLocation> location_;
  std::vector<Answer> waiting_;
  Brief brief_;
  /// Gathers what it is to be told.
  Job briefJob_;
  /// Runs until it has taken that, and nobody is sent to it.
  Job patience_;
  /// How long the next start waits after the last end.
  std::chrono::milliseconds pause_{0};
  std::chrono::steady_clock::time_point startedAt_;
  std::chrono::steady_clock::time_point endedAt_;
  Job startJob_;
};
