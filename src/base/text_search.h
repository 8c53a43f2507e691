#pragma once

#include <QString>

/// The form in which search compares texts: equal for upper and lower case by the user's locale, and for composed and
/// decomposed letters. A text contains another when its key contains the other's.
QString searchKey(const QString& text);

/// `text` without its last character as the user sees characters; an accent or a family emoji counts as one.
QString withoutLastCharacter(QString text);
