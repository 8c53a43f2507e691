#pragma once

#include <QTextDocument>
#include <QUrl>

#include <vector>

/// An answer as text that is laid out. Whatever it names, nothing is ever loaded.
class AnswerDocument final : public QTextDocument {
  Q_OBJECT

 public:
  /// A code block: consecutive blocks of the document.
  struct Code {
    int first = 0;
    int last = 0;
    QString text;
  };
  /// Words that lead to an address that may be opened.
  struct Link {
    int position = 0;
    int length = 0;
    QString words;
    QUrl url;
  };

  using QTextDocument::QTextDocument;

  /// HTML in it is text like any other, pictures are their descriptions, and only addresses of the web and of mail are
  /// links.
  void readMarkdown(const QString& text);
  void readPlain(const QString& text);

  /// What may be opened of an address that an answer names; empty: nothing.
  static QUrl openable(const QUrl& url);

  const std::vector<Code>& code() const { return code_; }
  const std::vector<Link>& links() const { return links_; }

 protected:
  QVariant loadResource(int, const QUrl&) override { return {}; }

 private:
  void replaceImages();
  void removeFenceMarks();
  void findCode();
  void takeCodeOutOfLists();
  void findLinks();
  void unlinkOthers();

  std::vector<Code> code_;
  std::vector<Link> links_;
};
