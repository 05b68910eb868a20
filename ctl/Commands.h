// The commands. Each prints its results and gives the exit code, or fails.
#pragma once

#include "ctl/Failure.h"
#include "ctl/Request.h"

namespace Commands {

Exit ports(const Request &request);
Exit search(const Request &request);
Exit get(const Request &request);
Exit set(const Request &request);
Exit watch(const Request &request);
Exit raw(const Request &request);
Exit preset(const Request &request);
Exit follow(const Request &request);

} // namespace Commands
