#include "services/service_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

#include "base/folder.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kStartPatience = 10s;
constexpr auto kBriefPatience = 3s;
constexpr auto kFirstPause = 500ms;
constexpr std::chrono::milliseconds kLongestPause = 30s;
/// What ran so long has not died of its own start.
constexpr auto kSound = 60s;

}  // namespace

ServiceProcess::~ServiceProcess() {
  if (!process_) return;
  // Its standard input ends, which it takes as its own end. Nobody waits for that.
  QProcess* const left = process_.release();
  left->disconnect(this);
  connect(left, &QProcess::finished, left, &QObject::deleteLater);
  left->closeWriteChannel();
}

ServiceProcess::Places ServiceProcess::Places::standard(const Folders& folders) {
  return {programFor(QCoreApplication::applicationDirPath()), folders.file(u"service"_s)};
}

QString ServiceProcess::Places::programFor(const QString& applicationFolder) {
  // What lies beside it there was installed on its own and may be of another version.
  const QString own = QDir::cleanPath(applicationFolder + u"/../libexec/vantle/vantle-service"_s);
  return QFileInfo(own).isExecutable() ? own : applicationFolder + u"/vantle-service"_s;
}

void ServiceProcess::locate(const JobRef& job, Answer answer) {
  if (location_ && !patience_.isRunning()) {
    job.later([answer = std::move(answer), location = *location_] { answer(location); });
    return;
  }
  waiting_.push_back(job.bind(std::move(answer)));
  if (!location_ && !startJob_.isRunning()) begin();
}

void ServiceProcess::begin() {
  startJob_ = Job::start();
  const auto rested = std::chrono::duration_cast<std::chrono::milliseconds>(clock_.monotonic() - endedAt_);
  clock_.after(std::max(0ms, pause_ - rested), startJob_, [this] { start(); });
}

void ServiceProcess::start() {
  if (!QFileInfo(places_.program).isExecutable()) {
    fail(u"The built-in service did not come with this Vantle: there is no %1."_s.arg(places_.program));
    return;
  }
  makePrivateFolder(places_.folder);
  startedAt_ = clock_.monotonic();
  process_ = std::make_unique<QProcess>();
  process_->setProgram(places_.program);
  process_->setArguments({u"serve"_s, u"--embedded"_s, u"--data"_s, places_.folder});
  process_->setStandardErrorFile(places_.folder + u"/service.log"_s);
  connect(process_.get(), &QProcess::readyReadStandardOutput, this, &ServiceProcess::read);
  connect(process_.get(), &QProcess::finished, this, &ServiceProcess::end);
  connect(process_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) end();
  });
  clock_.after(kStartPatience, startJob_, [this] { process_->kill(); });
  process_->start();
}

void ServiceProcess::read() {
  // A line may end the process and with it this object's hold on it.
  while (process_ && process_->canReadLine()) take(QJsonDocument::fromJson(process_->readLine()).object());
}

void ServiceProcess::take(const QJsonObject& line) {
  if (!location_)
    greet(line);
  else if (line.contains("provider"_L1))
    briefed();
}

void ServiceProcess::greet(const QJsonObject& greeting) {
  const int port = greeting.value("port"_L1).toInt();
  const QString token = greeting.value("token"_L1).toString();
  if (port <= 0 || token.isEmpty()) {
    process_->kill();
    return;
  }
  startJob_ = Job();
  const QUrl base(u"http://127.0.0.1:%1"_s.arg(port));
  location_ = ServiceLocation{base, base, token.toUtf8(), true};
  Q_EMIT runningChanged();
  briefAnew();
}

void ServiceProcess::briefAnew() {
  if (!location_) return;
  if (!brief_) {
    briefed();
    return;
  }
  briefJob_ = Job::start();
  patience_ = Job::start();
  brief_(briefJob_, [this](const QJsonObject& brief) { tell(brief); });
  // A keychain that waits for its password is not waited for: links need nothing of it.
  clock_.after(kBriefPatience, patience_, [this] { briefed(); });
}

void ServiceProcess::tell(const QJsonObject& brief) {
  if (process_) process_->write(QJsonDocument(brief).toJson(QJsonDocument::Compact) + '\n');
}

void ServiceProcess::briefed() {
  patience_ = Job();
  answerAll(*location_);
}

void ServiceProcess::end() {
  const bool wasRunning = location_.has_value();
  const bool wasSound = wasRunning && clock_.monotonic() - startedAt_ >= kSound;
  pause_ = wasSound ? 0ms : std::clamp(pause_ * 2, std::chrono::milliseconds(kFirstPause), kLongestPause);
  endedAt_ = clock_.monotonic();
  location_.reset();
  briefJob_ = Job();
  patience_ = Job();
  process_.release()->deleteLater();
  if (wasRunning) Q_EMIT runningChanged();
  fail(u"The built-in service does not start. Its log: %1/service.log"_s.arg(places_.folder));
}

void ServiceProcess::fail(const QString& text) {
  startJob_ = Job();
  answerAll(std::unexpected(ServiceError{ServiceError::Reason::configuration, text}));
}

void ServiceProcess::answerAll(const std::expected<ServiceLocation, ServiceError>& result) {
  for (const Answer& answer : std::exchange(waiting_, {})) answer(result);
}
