#pragma once

#include <memory>

#include "core/tools/tool.h"

/// Everything one tool is made of: its stores, its controller, and the tool itself. Made once by the composition root,
/// and kept for the whole run.
class ToolKit {
 public:
  virtual ~ToolKit() = default;

  virtual std::unique_ptr<Tool> makeTool() = 0;
  /// Makes what the first use would have to wait for; called once, when the start is over.
  virtual void prepare() {}
};
