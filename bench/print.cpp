// Printing speed: a 50-page print-out laid out line by line with the
// Graphics calls a print-out makes (text measured and wrapped, a page
// number in the margin), written to a PDF file.  Reports the time, the
// time per page, and the file's size and page count as poppler reads them.
// Without DISPLAY a private Xvfb is started.
#include "kelp/print.h"
#include "bench_display.h"
#include "kelp/graphics.h"
#include "kelp/objects.h"
#include "kelp/strings.h"
#include "main/wiring_table.h"
#include "process/display.h"
#include "strings/kstring.h"

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

KelpString Text(const std::string &s) { return kelp::string::FromUTF8(s).Release(); }

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    pid_t server = kelp::bench::StartXvfb();
    if (!kelp::InitToolkit(&argc, &argv)) {
        std::fprintf(stderr, "bench_print: no X display\n");
        return 1;
    }
    RuntimeInitExternalClasses();
    char path[] = "/tmp/kelp-bench-print-XXXXXX.pdf";
    const int fd = mkstemps(path, 4);
    if (fd >= 0)
        close(fd);
    setenv("KELP_PRINT_TO_FILE", path, 1);

    constexpr int kPages = 50;
    const auto start = std::chrono::steady_clock::now();
    RuntimeObject *g = RuntimeOpenPrinterDialog(nullptr, nullptr);
    if (!g) {
        std::fprintf(stderr, "bench_print: no printer graphics\n");
        return 1;
    }
    const int height = graphicsHeightGetter(g, 0), width = graphicsWidthGetter(g, 0);
    KelpString font = Text("Arial");
    graphicsTextFontSetter(g, 0, font);
    int lines = 0;
    for (int page = 1; page <= kPages; ++page) {
        if (page > 1)
            RuntimeGraphicsNextPage(g);
        graphicsTextSizeSetter(g, 0, 12);
        for (int y = 65 + 14; y < height - 65; y += 14, ++lines) {
            KelpString line = Text("Problem " + std::to_string(lines) +
                                   ":  Sam has 12 apples and buys 30 more.  How many now?");
            RuntimeGraphicsDrawString(g, line, 65, y);
            RuntimeUnlockString(line);
        }
        KelpString number = Text("Page: " + std::to_string(page));
        RuntimeGraphicsDrawString(g, number, 65, height - 5);
        RuntimeUnlockString(number);
    }
    RuntimeUnlockObject(g); // the job is written here
    const double elapsed =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    RuntimeUnlockString(font);

    struct stat st {};
    stat(path, &st);
    std::string pages;
    if (FILE *p = popen(("pdfinfo " + std::string(path) + " 2>/dev/null").c_str(), "r")) {
        char line[256];
        while (fgets(line, sizeof line, p))
            if (std::string(line).rfind("Pages:", 0) == 0)
                pages = line + 6;
        pclose(p);
    }
    std::printf("print-out of %d pages (%d lines, page %dx%d dots): %.1f ms, %.2f ms/page, "
                "%lld bytes, pdfinfo pages:%s",
                kPages, lines, width, height, elapsed, elapsed / kPages,
                static_cast<long long>(st.st_size), pages.empty() ? " ?\n" : pages.c_str());
    unlink(path);
    if (server > 0) {
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
    }
    return 0;
}
