// Binding time of a large generated image: 2,000 imported names drawn from
// the export table, 10,000 call holes, 10,000 data and code references and
// 5,000 string references.  Each round binds a fresh copy of the same code
// and data; the copy is not counted.
#include "image/binder.h"
#include "base/fatal_report.h"
#include "image/image_format.h"
#include "kelp/image.h"
#include "kelp/records.h"
#include "main/wiring_table.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace img = kelp::image;

namespace {

extern "C" void BenchTarget(void) {}

std::vector<std::string> gExtraNames;

int gReports = 0;
void CountReport(int, const char *, int, const char *, const char *) { ++gReports; }

struct Image {
    std::vector<uint8_t> code, data, link;
};

Image Generate() {
    constexpr int kNames = 2000, kHoles = 10000, kDataRefs = 5000, kCodeRefs = 5000,
                  kStringRefs = 5000, kLiterals = 1000;
    // Names from the table, made up to 2,000 with rows of this program's own.
    std::vector<std::string> names;
    for (int32_t i = 0; i < ExportCount() && int(names.size()) < kNames; ++i)
        if (const RelocEntry *row = ExportAt(i); row && row->name)
            names.push_back(row->name);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    for (int i = 0; int(names.size()) < kNames; ++i) {
        gExtraNames.push_back("BenchExport" + std::to_string(i));
        AddExport(gExtraNames.back().c_str(), reinterpret_cast<void *>(&BenchTarget));
        names.push_back(gExtraNames.back());
    }
    // Mix the case so that the binder's folding is exercised.
    for (size_t i = 0; i < names.size(); i += 3)
        for (char &c : names[i])
            c = char(c >= 'a' && c <= 'z' ? c - 32 : c);

    Image im;
    std::vector<uint32_t> last(kNames, 0), head(kNames, 0);
    for (int h = 0; h < kHoles; ++h) {
        const int n = h % kNames;
        im.code.push_back(0xE8);
        const uint32_t hole = uint32_t(im.code.size());
        kelp::AppendU32(im.code, 0);
        if (last[n])
            kelp::WriteU32(im.code.data() + last[n], hole);
        else
            head[n] = hole;
        last[n] = hole;
    }
    for (int n = 0; n < kNames; ++n) {
        im.link.push_back(1);
        im.link.push_back(1);
        kelp::AppendU32(im.link, head[n]);
        im.link.push_back(uint8_t(names[size_t(n)].size()));
        im.link.insert(im.link.end(), names[size_t(n)].begin(), names[size_t(n)].end());
        im.link.push_back(0);
    }
    std::vector<uint32_t> literals;
    for (int i = 0; i < kLiterals; ++i) {
        while (im.data.size() % 8)
            im.data.push_back(0);
        literals.push_back(uint32_t(im.data.size()));
        const std::string text = "literal number " + std::to_string(i);
        stringStorage s{};
        s.referenceCount = 1;
        s.capacity = uint32_t(text.size() + 2);
        s.length = int32_t(text.size());
        s.encoding = kEncodingUTF8;
        const auto *p = reinterpret_cast<const uint8_t *>(&s);
        im.data.insert(im.data.end(), p, p + sizeof s);
        im.data.push_back(uint8_t(text.size()));
        im.data.insert(im.data.end(), text.begin(), text.end());
        im.data.push_back(0);
    }
    auto word = [&](uint8_t type, uint64_t value) {
        im.code.push_back(0x48);
        im.code.push_back(0xB8);
        const uint32_t at = uint32_t(im.code.size());
        for (int i = 0; i < 8; ++i)
            im.code.push_back(uint8_t(value >> (8 * i)));
        im.link.push_back(type);
        kelp::AppendU32(im.link, at);
    };
    for (int i = 0; i < kDataRefs; ++i)
        word(2, uint64_t(i) % im.data.size());
    for (int i = 0; i < kCodeRefs; ++i)
        word(3, uint64_t(i));
    for (int i = 0; i < kStringRefs; ++i)
        word(5, literals[size_t(i % kLiterals)]);
    im.code.push_back(0xC3);
    return im;
}

} // namespace

int main() {
    kelp::WireRuntime();
    kelp::SetFatalReportHook(&CountReport);
    const Image im = Generate();
    const size_t stubBytes = img::CountImports(im.link.data(), im.link.size()) * img::kStubSize;
    std::vector<uint8_t> code(im.code.size() + stubBytes), data(im.data.size());
    std::vector<double> times;
    img::BindCounts counts;
    for (int round = 0; round < 200; ++round) {
        std::memcpy(code.data(), im.code.data(), im.code.size());
        std::memcpy(data.data(), im.data.data(), im.data.size());
        img::BindArea area;
        area.code = code.data();
        area.codeSize = im.code.size();
        area.data = data.data();
        area.dataSize = data.size();
        area.stubs = code.data() + im.code.size();
        area.stubCapacity = stubBytes;
        const auto start = std::chrono::steady_clock::now();
        counts = img::ApplyLinkTable(im.link.data(), im.link.size(), area);
        const auto end = std::chrono::steady_clock::now();
        times.push_back(std::chrono::duration<double, std::milli>(end - start).count());
    }
    std::sort(times.begin(), times.end());
    std::printf("bind: %zu records, %zu holes, %zu words, %zu stubs, %d reports\n", counts.records,
                counts.holes, counts.words, counts.stubs, gReports);
    std::printf("bind time over %zu rounds: min %.3f ms, median %.3f ms, max %.3f ms\n",
                times.size(), times.front(), times[times.size() / 2], times.back());
    return gReports == 0 ? 0 : 1;
}
