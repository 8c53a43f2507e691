#include <QDateTime>

#include <cstdio>

#include "service/accounts/metric.h"
#include "service/accounts/plan_store.h"
#include "service/accounts/secret.h"
#include "service/accounts/token_store.h"
#include "service/command/commands.h"
#include "service/command/place.h"

using namespace Qt::StringLiterals;

namespace commands {

namespace {

constexpr qsizetype kLongestName = 60;

QString day(qint64 seconds) { return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).date().toString(Qt::ISODate); }

/// Names stand in logs and tables.
bool isName(const QString& name) {
  return !name.isEmpty() && name.size() <= kLongestName &&
         std::ranges::all_of(name, [](QChar c) { return c.isLetterOrNumber() || u"-_.@+"_s.contains(c); });
}

Stored<bool> hasPlan(Connection& connection, const QString& name) {
  const auto plans = plans::list(connection);
  if (!plans) return std::unexpected(plans.error());
  return std::ranges::any_of(*plans, [&](const Plan& plan) { return plan.name == name; });
}

int addToken(Connection& connection, const QString& name, const Arguments& arguments) {
  if (!isName(name)) return refuse(u"a token's name has letters, digits and -_.@+ only"_s);
  const QString plan = arguments.value(u"plan"_s, u"self-hosted"_s);
  const auto known = hasPlan(connection, plan);
  if (!known) return fail(known.error().detail);
  if (!*known) return fail(u"there is no plan '%1'"_s.arg(plan));
  const auto kind = arguments.has(u"service"_s) ? Caller::Kind::service : Caller::Kind::person;
  const QByteArray secret = makeSecret();
  const auto added = tokens::add(
      connection, {.name = name, .kind = kind, .plan = plan, .createdAt = QDateTime::currentSecsSinceEpoch()}, secret);
  if (!added && added.error().reason == StorageError::Reason::conflict)
    return fail(u"there is, or was, a token named '%1'"_s.arg(name));
  if (!added) return fail(added.error().detail);
  std::fputs("This is shown once; only its digest is stored.\n", stderr);
  std::printf("%s\n", secret.constData());
  return kSuccess;
}

int listTokens(Connection& connection) {
  const auto found = tokens::list(connection);
  if (!found) return fail(found.error().detail);
  for (const Token& token : *found) {
    const QString state = token.revokedAt ? u"revoked "_s + day(token.revokedAt) : u"valid"_s;
    std::printf("%-24s %-8s %-12s %s  %s\n", qPrintable(token.name), qPrintable(tokens::kindName(token.kind)),
                qPrintable(token.plan), qPrintable(day(token.createdAt)), qPrintable(state));
  }
  return kSuccess;
}

int revokeToken(Connection& connection, const QString& name) {
  const auto revoked = tokens::revoke(connection, name, QDateTime::currentSecsSinceEpoch());
  if (!revoked) return fail(revoked.error().detail);
  return *revoked ? kSuccess : fail(u"there is no valid token named '%1'"_s.arg(name));
}

int listPlans(Connection& connection) {
  const auto found = plans::list(connection);
  if (!found) return fail(found.error().detail);
  for (const Plan& plan : *found) {
    std::printf("%-16s", qPrintable(plan.name));
    for (const QLatin1StringView metric : kMetrics) {
      const auto allowance = plan.allowances.value(metric, 0);
      std::printf("  %s %s", metric.data(), allowance ? QByteArray::number(*allowance).constData() : "unlimited");
    }
    std::printf("\n");
  }
  return kSuccess;
}

/// As an option of the command line.
QString optionFor(QLatin1StringView metric) { return QString(metric).replace(u'_', u'-'); }

std::expected<Plan, QString> readPlan(const QString& name, const Arguments& arguments) {
  Plan plan{name, {}};
  for (const QLatin1StringView metric : kMetrics) {
    const QString value = arguments.value(optionFor(metric));
    if (value.isEmpty()) continue;
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber);
    const bool isUnlimited = value == "unlimited"_L1;
    if (!isUnlimited && (!isNumber || number < 0))
      return std::unexpected(u"--%1 wants a number or 'unlimited'"_s.arg(optionFor(metric)));
    plan.allowances.insert(metric, isUnlimited ? std::nullopt : std::optional<qint64>(number));
  }
  return plan;
}

int setPlan(Connection& connection, const QString& name, const Arguments& arguments) {
  if (!isName(name)) return refuse(u"a plan's name has letters, digits and -_.@+ only"_s);
  const auto plan = readPlan(name, arguments);
  if (!plan) return refuse(plan.error());
  Stored<void> done = connection.begin();
  if (done) done = plans::set(connection, *plan);
  if (done) done = connection.commit();
  return done ? kSuccess : fail(done.error().detail);
}

}  // namespace

int token(const Arguments& arguments) {
  const QStringList& words = arguments.words();
  const QString verb = words.value(1);
  const bool isList = verb == "list"_L1 && words.size() == 2;
  const bool isAdd = verb == "add"_L1 && words.size() == 3;
  const bool isRevoke = verb == "revoke"_L1 && words.size() == 3;
  const QStringList own = isAdd ? QStringList{u"plan"_s, u"service"_s} : QStringList();
  if (!(isList || isAdd || isRevoke) || !arguments.unexpected(own + Place::options()).isEmpty())
    return refuse(u"'token' is called in another way"_s);
  const auto place = Place::open(arguments);
  if (!place) return fail(place.error());
  Connection& connection = (*place)->database().connection();
  if (isAdd) return addToken(connection, words[2], arguments);
  return isList ? listTokens(connection) : revokeToken(connection, words[2]);
}

int plan(const Arguments& arguments) {
  const QStringList& words = arguments.words();
  const bool isList = words.value(1) == "list"_L1 && words.size() == 2;
  const bool isSet = words.value(1) == "set"_L1 && words.size() == 3;
  QStringList own;
  if (isSet)
    for (const QLatin1StringView metric : kMetrics) own.append(optionFor(metric));
  if (!(isList || isSet) || !arguments.unexpected(own + Place::options()).isEmpty())
    return refuse(u"'plan' is called in another way"_s);
  const auto place = Place::open(arguments);
  if (!place) return fail(place.error());
  Connection& connection = (*place)->database().connection();
  return isList ? listPlans(connection) : setPlan(connection, words[2], arguments);
}

}  // namespace commands
