#pragma once

#include <QString>

/// A size as file managers write it: decimal units (1 MB is 1 000 000 bytes), whole bytes and kilobytes, at most one
/// decimal of megabytes and two above. "Zero KB" for nothing.
QString byteCountText(qint64 bytes);
