#pragma once

#include "service/ai/provider_settings.h"
#include "service/command/arguments.h"
#include "service/http/http_server.h"

/// How "serve" was called.
struct ServeOptions {
  HttpServer::Options server;
  /// Started by Vantle: makes its credential itself, hands it over on stdout and ends with stdin.
  bool isEmbedded = false;
  /// Without a slash at the end; empty: none.
  QByteArray publicUrl;
  /// A file whose first line is a credential beside those of the database; empty: none.
  QString credentialFile;
  /// Of an embedded service until its parent says otherwise.
  ProviderSettings provider;
  /// So many questions at a time are put to it.
  int aiConcurrency = 0;
  /// For an answer of it, where the endpoint's own limit is not shorter.
  std::chrono::seconds aiTimeLimit{0};
  int ratePerAddress = 0;
  int ratePerToken = 0;
  std::chrono::seconds drain{0};

  /// Error: what is wrong with the arguments.
  static std::expected<ServeOptions, QString> read(const Arguments& arguments);
};
