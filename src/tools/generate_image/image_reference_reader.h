#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <optional>

/// An image as it goes with a prompt.
struct PreparedReference {
  QByteArray png;
  QImage thumbnail;
};

/// `bytes` as a PNG that a service takes: one with very many pixels is made smaller. None when it is no picture. Takes
/// its time; any thread.
std::optional<PreparedReference> preparedReference(const QByteArray& bytes, int thumbnailEdge);

/// The contents of a regular file of at most 64 MB, of a link's target too; empty for any other. Blocks; any thread.
QByteArray imageFileContents(const QString& path);
