#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <expected>

/// An image that goes along with a question.
struct AskAttachment {
  /// Tells it from the others of the list; given by the model.
  int id = 0;
  QByteArray png;
  /// For the list and the transcript; as large as that shows it at most, in pixels of a screen of triple density.
  QImage thumbnail;
};

/// An attachment, or why there is none, in words for the user.
using MadeAttachment = std::expected<AskAttachment, QString>;

/// The picture in `bytes`. A PNG that can be sent goes as it is; anything else is encoded anew, and what is larger than
/// a screen of 4K, or too large to be sent, made smaller. Any thread; a large one takes a second.
MadeAttachment attachmentOf(const QByteArray& bytes);
/// The picture in a file.
MadeAttachment attachmentOfFile(const QString& path);
/// A picture that is decoded already.
MadeAttachment attachmentOf(const QImage& picture);
