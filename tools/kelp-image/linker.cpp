#include "link_state.h"

#include <cctype>

namespace kelp::tool {

bool Linker::Fail(size_t object, uint32_t section, const std::string &symbol,
                  const std::string &what) {
    std::string where = mObjects[object].path;
    if (section && section < mObjects[object].sections.size())
        where += ": section " + mObjects[object].sections[section].name;
    if (!symbol.empty())
        where += ": symbol " + symbol;
    mError = where + ": " + what;
    return false;
}

bool Linker::Fail(const std::string &what) {
    mError = what;
    return false;
}

bool Linker::ReadObjects(LinkStats &stats) {
    if (mInput.objects.empty())
        return Fail("no objects to link");
    for (const auto &e : mInput.exports) {
        std::string folded = e;
        for (char &c : folded)
            c = char(std::toupper(static_cast<unsigned char>(c)));
        mExportsFolded.emplace(folded, e);
    }
    mObjects.resize(mInput.objects.size());
    for (size_t i = 0; i < mInput.objects.size(); ++i) {
        std::string error;
        if (!ReadElfObject(mInput.objects[i], mObjects[i], error))
            return Fail(mInput.objects[i] + ": " + error);
        stats.objectBytes += mObjects[i].bytes.size();
    }
    return true;
}

bool Linker::IsExport(const std::string &name) const {
    std::string folded = name;
    for (char &c : folded)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    return mExportsFolded.count(folded) != 0;
}

const std::string *Linker::SoftLibrary(const std::string &function) const {
    for (const auto &s : mInput.soft)
        if (s.function == function)
            return &s.library;
    return nullptr;
}

bool LinkObjects(const LinkInput &input, image::Segments &out, LinkStats &stats,
                 std::string &error) {
    Linker linker(input, error);
    return linker.ReadObjects(stats) && linker.Layout() && linker.ResolveSymbols() &&
           linker.Relocate() && linker.Write(out, stats);
}

} // namespace kelp::tool
