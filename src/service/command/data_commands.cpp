#include <QDateTime>
#include <QJsonDocument>
#include <QUrl>

#include <cstdio>

#include "service/command/commands.h"
#include "service/command/place.h"
#include "service/links/link_store.h"
#include "service/maintenance.h"
#include "service/reports/export.h"

using namespace Qt::StringLiterals;

namespace commands {

namespace {

bool writeLine(const QJsonObject& object) {
  const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
  return std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout) ==
         static_cast<std::size_t>(line.size());
}

/// Of a whole link as well as of its id alone.
QString idOf(const QString& text) {
  const QString path = QUrl(text).path();
  const auto prefix = path.indexOf("/l/"_L1);
  return prefix < 0 ? text : path.mid(prefix + 3).section(u'/', 0, 0);
}

int showLink(Place& place, const QString& id) {
  const auto link = LinkStore(place.database()).find(id);
  if (!link) return fail(link.error().detail);
  if (!*link) return fail(u"there is no such link"_s);
  const auto time = [](qint64 seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate);
  };
  writeLine({{u"name"_s, (*link)->name},
             {u"type"_s, QString::fromUtf8((*link)->type)},
             {u"size"_s, (*link)->size},
             {u"sha256"_s, (*link)->blob},
             {u"owner"_s, (*link)->owner},
             {u"createdAt"_s, time((*link)->createdAt)},
             {u"expiresAt"_s, time((*link)->expiresAt)}});
  return kSuccess;
}

int removeLink(Place& place, const QString& id) {
  const auto removed = LinkStore::remove(place.database().connection(), id);
  if (!removed) return fail(removed.error().detail);
  return *removed ? kSuccess : fail(u"there is no such link"_s);
}

}  // namespace

int link(const Arguments& arguments) {
  const QStringList& words = arguments.words();
  const bool isShow = words.value(1) == "show"_L1;
  if (!(isShow || words.value(1) == "remove"_L1) || words.size() != 3 ||
      !arguments.unexpected(Place::options()).isEmpty())
    return refuse(u"'link' is called in another way"_s);
  const auto place = Place::open(arguments);
  if (!place) return fail(place.error());
  const QString id = idOf(words[2]);
  return isShow ? showLink(**place, id) : removeLink(**place, id);
}

int exportLines(const Arguments& arguments) {
  const QString what = arguments.words().value(1);
  const bool isEvents = what == "events"_L1;
  const bool isFeedback = what == "feedback"_L1;
  if (!(isEvents || isFeedback || what == "suggestions"_L1) || arguments.words().size() != 2 ||
      !arguments.unexpected(Place::options()).isEmpty())
    return refuse(u"'export' is called in another way"_s);
  const auto place = Place::open(arguments);
  if (!place) return fail(place.error());
  Connection& connection = (*place)->database().connection();
  const QString kind = isFeedback ? u"feedback"_s : u"suggestion"_s;
  const auto done = isEvents ? exporting::events(connection, writeLine)
                             : exporting::reports(connection, kind, (*place)->folder() + u"/blobs"_s, writeLine);
  if (!done) return fail(done.error().detail);
  return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? kSuccess : fail(u"the lines could not be written"_s);
}

int purge(const Arguments& arguments) {
  if (arguments.words().size() != 1 || !arguments.unexpected(Place::options()).isEmpty())
    return refuse(u"'purge' is called in another way"_s);
  const auto place = Place::open(arguments);
  if (!place) return fail(place.error());
  const auto removed = Maintenance::purge((*place)->database(), (*place)->blobs());
  if (!removed) return fail(removed.error().detail);
  std::printf("%d\n", *removed);
  return kSuccess;
}

}  // namespace commands
