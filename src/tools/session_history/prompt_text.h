#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The most characters of a title, counted as a reader counts them.
inline constexpr int kLongestPrompt = 160;

/// A text as one line of at most `longest` characters; a space that the cut leaves at its end stays.
QString shortLine(const QString& text, int longest = kLongestPrompt);
/// A prompt as one line of at most `longest` characters; none when nothing of it is the user's own words.
std::optional<QString> cleanPrompt(const QString& prompt, int longest = kLongestPrompt);
/// The first of `texts` that survives cleaning; empty when none does.
QString firstPrompt(const QStringList& texts, int longest = kLongestPrompt);
/// The user's own words in a Codex prompt, which editors put the open files in front of.
QString codexRequest(const QString& prompt);
