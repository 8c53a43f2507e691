#pragma once

#include <string_view>

#include "service/http/multipart_reader.h"

/// Reads the lines before a part's content, without the empty one. Nothing: they are not those of a form's part.
std::optional<PartHead> readPartHead(std::string_view lines);
