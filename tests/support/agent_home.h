#pragma once

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

/// A home folder with transcripts whose dates are counted in minutes.
struct AgentHome {
  QString write(const QString& path, const QByteArray& bytes, int minute = 0) {
    const QString full = directory.path() + QLatin1Char('/') + path;
    QDir().mkpath(QFileInfo(full).path());
    QFile file(full);
    if (!file.open(QFile::WriteOnly)) qFatal("cannot write");
    file.write(bytes.leftJustified(500, '\n'));
    file.flush();
    file.setFileTime(QDateTime::fromSecsSinceEpoch(1'780'000'000 + 60 * minute), QFile::FileModificationTime);
    return full;
  }
  QString claude(const QString& id, int minute, const QString& cwd = QStringLiteral("/w")) {
    return write(QStringLiteral(".claude/projects/-w/%1.jsonl").arg(id),
                 R"({"type":"user","message":{"content":"hello"},"cwd":")" + cwd.toUtf8() +
                     R"(","gitBranch":"main"})"
                     "\n",
                 minute);
  }
  QString codex(const QString& id, int minute, const QString& cwd = QStringLiteral("/c")) {
    return write(QStringLiteral(".codex/sessions/2026/11/20/rollout-%1.jsonl").arg(id),
                 R"({"type":"session_meta","payload":{"id":")" + id.toUtf8() + R"(","cwd":")" + cwd.toUtf8() +
                     R"("}})"
                     "\n"
                     R"({"type":"event_msg","payload":{"type":"user_message","message":"rename"}})"
                     "\n",
                 minute);
  }
  QString path() const { return directory.path(); }

  QTemporaryDir directory;
};
