// Defaults for sanitizer builds, compiled into every program of the tree so
// that a test program run by hand behaves as under ctest.  Leaks are
// checked at exit.  The toolkit and the libraries under it keep caches and
// type registrations until the process ends and never free them; those are
// suppressed by the functions that make them, so that a leak of ours that
// merely passes through the toolkit still shows.  A failed allocation must
// come back as null, so that the allocation paths that handle that can be
// tested.
extern "C" {
__attribute__((visibility("default"), used)) const char *__asan_default_options() {
    return "detect_leaks=1:allocator_may_return_null=1";
}
__attribute__((visibility("default"), used)) const char *__ubsan_default_options() {
    return "print_stacktrace=1";
}
__attribute__((visibility("default"), used)) const char *__lsan_default_suppressions() {
    // Each line names a library or the function that builds a cache kept for
    // the life of the process.  The libraries are built without frame
    // pointers, so a stack seldom reaches further than the library's own
    // frame: those that show no function name are suppressed by library.
    return
        // fontconfig: the configuration, the font sets and pattern values
        // FcInit loads once for the fonts of every layout
        "leak:libfontconfig.so\n";
}
}
