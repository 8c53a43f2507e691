#pragma once

#include <QStringList>

#include <optional>

/// The words of a command line as a POSIX shell splits them: by white space, quoted with ' or ", with \ before single
/// characters. Nothing is expanded, and what would be an operator is part of a word. Nothing: a quote is not closed.
std::optional<QStringList> shellWords(const QString& line);
