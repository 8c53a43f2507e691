#include "platform/x11/x11_network_path.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QNetworkInformation>
#include <QSocketNotifier>

#include "base/logging.h"
#include "platform/x11/route_monitor.h"

using namespace Qt::StringLiterals;

namespace {

/// What the network is known to be; lives on the watching thread.
class PathWatcher final : public QObject {
 public:
  explicit PathWatcher(NetworkPath::Report tell) : tell_(std::move(tell)) {}

  void begin() {
    if (routes_.descriptor() >= 0) {
      notifier_ = new QSocketNotifier(routes_.descriptor(), QSocketNotifier::Read, this);
      connect(notifier_, &QSocketNotifier::activated, this, [this] {
        routes_.drain();
        tell();
      });
    }
    tell();
    followNetworkManager();
  }

 private:
  /// A network without a gateway is a path too, which only NetworkManager knows; routes that others have made are
  /// unknown to it. So either suffices.
  void tell() { tell_(hasDefaultRoute() || isManagedPath()); }

  bool isManagedPath() const {
    return managed_ != nullptr && managed_->reachability() >= QNetworkInformation::Reachability::Site;
  }

  /// Qt's other backends are loaded along with NetworkManager's and see changes late or never: they are left alone.
  void followNetworkManager() {
    const auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(u"org.freedesktop.NetworkManager"_s)) return;
    if (!QNetworkInformation::loadBackendByName(u"networkmanager")) return;
    managed_ = QNetworkInformation::instance();
    connect(managed_, &QNetworkInformation::reachabilityChanged, this, &PathWatcher::tell);
    tell();
  }

  NetworkPath::Report tell_;
  RouteMonitor routes_;
  QSocketNotifier* notifier_ = nullptr;
  QNetworkInformation* managed_ = nullptr;
};

}  // namespace

X11NetworkPath::~X11NetworkPath() {
  {
    const std::lock_guard lock(mutex_);
    report_ = nullptr;
  }
  thread_.quit();
  thread_.wait();
}

void X11NetworkPath::start(Report report) {
  report_ = std::move(report);
  auto* watcher = new PathWatcher([this](bool satisfied) { tell(satisfied); });
  watcher->moveToThread(&thread_);
  QObject::connect(&thread_, &QThread::started, watcher, &PathWatcher::begin);
  QObject::connect(&thread_, &QThread::finished, watcher, &QObject::deleteLater);
  thread_.setObjectName(u"network path"_s);
  thread_.start(QThread::LowPriority);
}

void X11NetworkPath::tell(bool satisfied) {
  qCDebug(lcPlatform) << "network path satisfied:" << satisfied;
  const std::lock_guard lock(mutex_);
  if (report_) report_(satisfied);
}
