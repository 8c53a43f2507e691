#pragma once

#include <QUrl>

/// Whether the URL's host is this computer, by its name alone: nobody is asked.
bool isLoopback(const QUrl& url);
