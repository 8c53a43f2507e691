#pragma once

#include <expected>
#include <map>
#include <vector>

#include "base/file_error.h"
#include "core/net/http_client.h"
#include "services/clipboard_image.h"

/// A file that is sent from the disk, with the name and media type it is sent under.
struct UploadFile {
  QString path;
  QString filename;
  QString mimeType;
};

/// Upload requests with a body of the media type multipart/form-data. Each has a boundary of its own, 60 seconds of
/// patience with a silent service, and `token` as bearer credential unless that is empty.
///
/// A text that is no valid Unicode is left out, and the request is still sent.
struct Multipart {
  using Fields = std::map<QString, QString>;

  /// What media type a file has that no other is known for.
  static constexpr QLatin1StringView kUnknownType{"application/octet-stream"};

  /// The text fields, then `image` under the name "file".
  static HttpRequest request(const QUrl& url, const QByteArray& token, const ClipboardImage& image,
                             const Fields& fields = {});
  /// The text fields, then `primaryImage` under "file", then each of `additionalImages` under "files".
  static HttpRequest request(const QUrl& url, const QByteArray& token, const ClipboardImage& primaryImage,
                             const std::vector<ClipboardImage>& additionalImages, const Fields& fields);
  /// The text fields, then each of `images` under "files".
  static HttpRequest request(const QUrl& url, const QByteArray& token, const std::vector<ClipboardImage>& images,
                             const Fields& fields = {});
  /// `file` alone, under "files", read from the disk while it is sent. Error: it cannot be opened, or is no regular
  /// file.
  static std::expected<HttpRequest, FileError> request(const QUrl& url, const QByteArray& token,
                                                       const UploadFile& file);
};
