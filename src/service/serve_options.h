#pragma once

#include <QStringList>

#include <cstdint>
#include <expected>

/// How "vantle-service serve" was called.
struct ServeOptions {
  std::uint16_t port = 0;
  /// Started by Vantle: makes its credential itself, hands it over on stdout and ends with stdin.
  bool isEmbedded = false;
  /// Where it keeps what it gets.
  QString dataFolder;
  /// A file whose first line is the credential; empty: none.
  QString credentialFile;

  /// Error: what is wrong with the arguments.
  static std::expected<ServeOptions, QString> parse(const QStringList& arguments);
  static QString usage();
};
