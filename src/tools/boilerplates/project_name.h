#pragma once

#include <QString>

/// What keeps a text from being a project's name, as a sentence for the user; empty when nothing does.
QString projectNameProblem(const QString& name);
