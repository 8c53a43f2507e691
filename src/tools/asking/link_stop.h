#pragma once

#include <QAbstractButton>
#include <QUrl>

/// Where the keyboard stops at a link of a text, over its words; the pointer goes through to them.
class LinkStop final : public QAbstractButton {
  Q_OBJECT

 public:
  explicit LinkStop(QWidget* parent);

  void setLink(const QString& words, const QUrl& url);
  const QUrl& url() const { return url_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QUrl url_;
};
