#include "service/links/link_page.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QLocale>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kStyle =
    ":root{color-scheme:light "
    "dark;--card:#fcfcfd;--page:#eceef1;--text:#1b1d21;--soft:#5b616b;--accent:#2f6fed;--on:#fff}"
    "@media(prefers-color-scheme:dark){:root{--card:#1e1f24;--page:#121316;--text:#f2f3f5;--soft:#9ba1aa;"
    "--accent:#4c8dff;--on:#0b1220}}"
    "*{box-sizing:border-box}"
    "body{margin:0;min-height:100vh;display:grid;place-items:center;padding:24px;background:var(--page);color:var(--"
    "text);"
    "font:16px/24px Inter,system-ui,-apple-system,sans-serif}"
    "main{width:100%;max-width:440px;padding:32px;border-radius:14px;background:var(--card);"
    "box-shadow:0 1px 2px rgba(0,0,0,.08),0 8px 32px rgba(0,0,0,.12)}"
    "h1{margin:0 0 8px;font-size:20px;line-height:28px;font-weight:600;overflow-wrap:anywhere}"
    "p{margin:0;color:var(--soft)}"
    "a{display:block;margin-top:24px;padding:12px 16px;border-radius:8px;background:var(--accent);color:var(--on);"
    "font-weight:600;text-align:center;text-decoration:none}"
    "a:hover{filter:brightness(1.08)}a:focus-visible{outline:2px solid var(--accent);outline-offset:2px}"_L1;

constexpr auto kPage =
    "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><meta name=\"viewport\" "
    "content=\"width=device-width,initial-scale=1\"><meta name=\"robots\" content=\"noindex\"><title>%1</title>"
    "<style>%2</style></head><body><main><h1>%1</h1>%3</main></body></html>\n"_L1;

QByteArray styleHash() {
  const QByteArrayView style(kStyle.data(), kStyle.size());
  return QCryptographicHash::hash(style.toByteArray(), QCryptographicHash::Sha256).toBase64();
}

Response page(int status, const QString& title, const QString& content) {
  static const QByteArray policy = "default-src 'none'; style-src 'sha256-" + styleHash() +
                                   "'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
  // The parts are put in together: what a name holds is not looked through again.
  const QString html = QString(kPage).arg(title.toHtmlEscaped(), QString(kStyle), content);
  return {.status = status,
          .body = html.toUtf8(),
          .contentType = "text/html; charset=utf-8",
          .headers = {{"Content-Security-Policy", policy}}};
}

}  // namespace

Response linkPage(const Link& link) {
  const QLocale english(QLocale::English);
  const QString size = english.formattedDataSize(link.size, 1, QLocale::DataSizeSIFormat).remove(u".0"_s);
  const QDate expiry = QDateTime::fromSecsSinceEpoch(link.expiresAt, Qt::UTC).date();
  // Relative to the page: a proxy may put the service below a path of its own.
  const QString address = link.id + u'/' + QString::fromLatin1(QUrl::toPercentEncoding(link.name));
  return page(200, link.name,
              u"<p>%1 · available until %2</p><a href=\"%3\" download>Download</a>"_s.arg(
                  size.toHtmlEscaped(), english.toString(expiry, u"d MMMM yyyy"_s), address.toHtmlEscaped()));
}

Response linkRefusal(int status, const QString& title, const QString& text, bool isForPerson) {
  if (!isForPerson) return Response::text(status, text.toUtf8());
  return page(status, title, u"<p>%1</p>"_s.arg(text.toHtmlEscaped()));
}
