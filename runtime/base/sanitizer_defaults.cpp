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
    // The font matcher under the toolkit's text layout drops patterns of
    // its own (its frames carry no symbols here, so the library names them).
    // Nothing of ours calls it directly.
    return "leak:libfontconfig.so\n";
}
}
