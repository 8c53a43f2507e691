#include "tools/frequent_clis/frequent_clis_tool.h"

#include "tools/frequent_clis/cli_palette_controller.h"

void FrequentCLIsTool::activate() { palette_.show(); }
