#include "broken_pipe.h"

#include <csignal>

namespace qsf2sql_tool {

void reportBrokenPipesAsErrors() {
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace qsf2sql_tool
