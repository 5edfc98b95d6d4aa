// Defaults for sanitizer builds.  The toolkit keeps caches until the process
// ends and never frees them, so a leak check at exit reports the toolkit,
// not us; it is off.  A failed allocation must come back as null, so that
// the allocation paths that handle that can be tested.
extern "C" {
__attribute__((visibility("default"), used)) const char *__asan_default_options() {
    return "detect_leaks=0:allocator_may_return_null=1";
}
__attribute__((visibility("default"), used)) const char *__ubsan_default_options() {
    return "print_stacktrace=1";
}
}
