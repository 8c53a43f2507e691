#pragma once

#include "service/http/message.h"
#include "service/links/link.h"

/// The page that a browser shows for a file to be saved: its name, size and expiry, and a button.
Response linkPage(const Link& link);

/// A page for people, or a line for programs.
Response linkRefusal(int status, const QString& title, const QString& text, bool isForPerson);
