#pragma once

#include "core/net/http_client.h"

/// The value of the header "Authorization" for `credential`; empty for one that is empty or cannot stand in a header.
QByteArray bearer(const QByteArray& credential);
/// Adds the header "Authorization", unless there is nothing to say in it.
void addBearer(HttpHeaders& headers, const QByteArray& credential);
