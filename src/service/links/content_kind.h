#pragma once

#include <QByteArray>
#include <QString>

/// How a file is served, decided once when it comes in. A browser shows what cannot act: pictures that are what they
/// claim to be, and text as plain text. All else it saves.
struct ContentKind {
  QByteArray type;
  bool isShown = false;

  /// `declared`: what the sender says. `beginning`: the first bytes.
  static ContentKind of(const QByteArray& declared, const QByteArray& beginning);
};

/// The last part of a name as sent, without what would hide in it; "file" when nothing is left.
QString safeFileName(const QByteArray& sent);
