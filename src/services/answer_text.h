#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <span>

/// The text in an answer of a service: of a JSON object the first of `members` that is a text and not empty, as it is;
/// else `dataMember` of its member "data"; of anything that is neither object nor array, the whole body without the
/// white space around it. Nothing when there is none.
std::optional<QString> textIn(const QByteArray& body, std::span<const QLatin1StringView> members,
                              QLatin1StringView dataMember);
