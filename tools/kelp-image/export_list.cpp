#include "export_list.h"

#include "tool_files.h"

#include <unistd.h>

namespace kelp::tool {

// The variable the runtime answers with its export names, one a line.
static const char kListExports[] = "KELP_LIST_EXPORTS=1";

bool RuntimeExports(const std::string &runtime, std::vector<std::string> &names,
                    std::string &error) {
    std::string out;
    if (access(runtime.c_str(), X_OK) != 0 || !RunCollecting(runtime, kListExports, out)) {
        error = "cannot ask the runtime " + runtime + " for its exports";
        return false;
    }
    names.clear();
    size_t at = 0;
    while (at < out.size()) {
        size_t end = out.find('\n', at);
        if (end == std::string::npos)
            end = out.size();
        if (end > at)
            names.emplace_back(out, at, end - at);
        at = end + 1;
    }
    if (names.empty()) {
        error = "the runtime " + runtime + " lists no exports";
        return false;
    }
    return true;
}

std::string DefaultRuntime() { return ToolFolder() + "/kelp"; }

} // namespace kelp::tool
