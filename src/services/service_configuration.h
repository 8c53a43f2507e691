#pragma once

#include <expected>
#include <optional>

#include "core/settings/store.h"
#include "services/service_location.h"

struct Folders;

/// The services of the user's own, "services.json": base URLs as they were typed, empty when not set, and the token of
/// the tools' requests.
struct ServiceSettings {
  static constexpr const char* kStoreName = "Services";

  QString api;
  QString links;
  QString token;
  /// False: the hosts are kept, but not used. None: they are used as soon as one is set.
  std::optional<bool> useOwnHosts{};

  bool operator==(const ServiceSettings&) const = default;
  void read(JsonReader& reader);
  /// Writes what is set and nothing else.
  void write(QJsonObject& object) const;
};

enum class ServiceMode {
  /// The program that comes with Vantle, on this computer.
  builtIn,
  /// The hosts in "services.json".
  ownHosts,
  /// The hosts that this binary was built with.
  presetHosts,
};

/// The hosts and the token that this binary was built with; empty where there are none.
struct PresetHosts {
  QString api;
  QString links;
  QString token;

  static PresetHosts ofThisBuild();
};

/// Which services there are to be used. The file may change under the running program ("vantle config", an editor), so
/// it is read anew before each request. Main thread only.
class ServiceConfiguration : public Store<ServiceSettings> {
 public:
  explicit ServiceConfiguration(QString path, PresetHosts preset = PresetHosts::ofThisBuild())
      : Store(std::move(path)), preset_(std::move(preset)) {}

  /// Own hosts as soon as one of the two is set, unless the user wants them to rest.
  ServiceMode mode() const;
  /// What is used when the user sets no hosts of his own.
  ServiceMode standardMode() const;
  /// The hosts in force, read anew. Error: a base URL that cannot be used. With `builtIn` there is nothing to say here.
  std::expected<ServiceLocation, ServiceError> hosts();

 private:
  PresetHosts preset_;
};
