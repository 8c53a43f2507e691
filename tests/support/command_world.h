#pragma once

#include <QBuffer>
#include <QTemporaryDir>

#include "cli/command.h"
#include "services/service_configuration.h"
#include "support/fake_archiver.h"
#include "support/fake_vault.h"
#include "support/files.h"
#include "support/strict_server.h"

/// A GIF of one pixel.
inline const QByteArray kPixel = QByteArray::fromBase64("R0lGODlhAQABAIAAAP///wAAACwAAAAAAQABAAACAkQBADs=");

/// Keeps what would go into the keychain beyond the platform that one command makes.
struct SharedVault final : CredentialVault {
  explicit SharedVault(FakeVault& vault) : kept(vault) {}
  void read(const QString& account, const JobRef& job, Read read) override { kept.read(account, job, read); }
  void write(const QString& account, const QByteArray& secret, const JobRef& job, Done done) override {
    kept.write(account, secret, job, done);
  }
  void remove(const QString& account, const JobRef& job, Done done) override { kept.remove(account, job, done); }
  FakeVault& kept;
};

struct Run {
  QString out;
  QString err;
  int code = -1;
};

/// The command line as a shell would run it, with a temporary folder, no display and a keychain in
/// memory.
struct CommandWorld {
  CommandWorld() {
    QFile::setPermissions(directory.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", directory.path().toUtf8());
  }

  Run run(const QStringList& arguments, const QByteArray& typed = {}) {
    Run run;
    QTextStream out(&run.out);
    QTextStream err(&run.err);
    QBuffer input;
    input.setData(typed);
    input.open(QIODevice::ReadOnly);
    CommandContext context{out,
                           err,
                           folders,
                           folders.applicationSupport,
                           [] { return false; },
                           [this] {
                             Platform platform = makeNullPlatform();
                             platform.credentials = std::make_unique<SharedVault>(vault);
                             return platform;
                           },
                           &input,
                           [] { return std::make_unique<FakeArchiver>(); }};
    run.code = runCommandLine(arguments, context);
    return run;
  }
  /// Requests go to `server`.
  void useServer(const StrictServer& server) {
    ServiceConfiguration(folders.file(QStringLiteral("services.json"))).update([&](ServiceSettings& settings) {
      settings.api = settings.links = server.url({}).toString();
    });
  }
  QString image(const QString& name, const QByteArray& bytes = kPixel) {
    const QString path = directory.filePath(name);
    if (!writeFile(path, bytes)) qFatal("%s", qPrintable(path));
    return path;
  }

  QTemporaryDir directory;
  Folders folders{directory.path()};
  FakeVault vault;
};
