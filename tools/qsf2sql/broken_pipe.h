#pragma once

namespace qsf2sql_tool {

/// From now on a reader that goes away makes writes fail with EPIPE instead of ending the process.
void reportBrokenPipesAsErrors();

}  // namespace qsf2sql_tool
