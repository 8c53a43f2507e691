#pragma once

#include <QMap>

#include <atomic>

#include "service/ai/provider.h"
#include "service/http/message.h"
#include "service/http/multipart_reader.h"

/// How many bytes of pictures all requests together may hold in memory. Any thread.
class PictureRoom {
 public:
  bool take(qint64 bytes);
  void give(qint64 bytes) { used_ -= bytes; }

 private:
  std::atomic<qint64> used_ = 0;
};

/// A form with pictures, taken into memory: they are passed on and kept nowhere.
class PictureForm final : private PartReceiver {
 public:
  struct Rules {
    QList<QByteArray> files;
    std::size_t mostFiles = 1;
    QList<QByteArray> fields;
  };
  /// Of one form with all that belongs to it.
  static constexpr qint64 kLargest = 60'000'000;

  PictureForm(const Rules& rules, const QByteArray& boundary, PictureRoom& room);
  ~PictureForm() override { room_.give(taken_); }
  PictureForm(const PictureForm&) = delete;
  PictureForm& operator=(const PictureForm&) = delete;

  void take(std::string_view bytes);
  /// The body is whole. Error: what is wrong with it.
  std::expected<void, Response> finish();

  QString field(const QByteArray& name) const { return QString::fromUtf8(fields_.value(name)); }
  /// In the order in which they were sent.
  const std::vector<Picture>& pictures() const { return pictures_; }

 private:
  void beginPart(const PartHead& head) override;
  void takePart(std::string_view bytes) override;
  void endPart() override;
  void fail(int status, const QByteArray& text);

  const Rules& rules_;
  PictureRoom& room_;
  MultipartReader reader_;
  qint64 taken_ = 0;
  std::optional<Response> failure_;
  std::vector<Picture> pictures_;
  QMap<QByteArray, QByteArray> fields_;
  /// Of the part that comes in; null: it is not wanted.
  QByteArray* target_ = nullptr;
  qsizetype longest_ = 0;
};
