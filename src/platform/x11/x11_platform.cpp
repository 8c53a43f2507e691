#include "platform/platform.h"

Platform makePlatform() { return makeNullPlatform(); }
