#include "windows/menu_handlers.h"

#include "objects/text.h"

#include <string>
#include <utility>
#include <vector>

namespace kelp {
namespace {

// A handful of names per owner: a flat vector searched in order.
using Handlers = std::vector<std::pair<std::string, void *>>;

} // namespace

void AddMenuHandler(void *&map, KelpString name, void *code) {
    if (!code)
        return;
    auto *&handlers = reinterpret_cast<Handlers *&>(map);
    if (!handlers)
        handlers = new Handlers();
    const std::string_view key = objtext::View(name);
    for (auto &row : *handlers)
        if (objtext::SameName(row.first, key)) {
            row.second = code;
            return;
        }
    handlers->emplace_back(std::string(key), code);
}

void *FindMenuHandler(const void *map, std::string_view name) {
    if (!map)
        return nullptr;
    for (const auto &row : *static_cast<const Handlers *>(map))
        if (objtext::SameName(row.first, name))
            return row.second;
    return nullptr;
}

void FreeMenuHandlers(void *&map) {
    delete static_cast<Handlers *>(map);
    map = nullptr;
}

} // namespace kelp
