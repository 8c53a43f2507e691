#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

/// The group "Desktop Entry" of a .desktop file, read as far as starting a program at login needs it. Lines that are no
/// keys are passed over.
class DesktopEntry {
 public:
  DesktopEntry() = default;
  explicit DesktopEntry(const QByteArray& text);

  /// The value without its escapes; empty without the key.
  QString value(const QString& key) const { return values_.value(key); }
  /// The program that the key Exec starts, without its quotes and arguments.
  QString program() const;

 private:
  QHash<QString, QString> values_;
};

/// A path as one argument of the key Exec: quoted, and escaped as strings in these files are.
QString execArgument(const QString& path);
