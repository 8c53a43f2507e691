#pragma once

#include "service/ai/ai_exchange.h"
#include "service/http/router.h"

/// The paths that a provider answers: /v1/answers, /v1/text, /v1/image-answers, /v1/image-generate and /ai-prompt.
void addAIEndpoints(Router& router, const AIServices& services);
