// Defaults for sanitizer builds, compiled into every program of the tree so
// that a test program run by hand behaves as under ctest.  Leaks are
// checked at exit.  The toolkit and the libraries under it keep caches and
// type registrations until the process ends and never free them; those are
// suppressed by the functions that make them where a stack names them, so
// that a leak of ours that merely passes through the toolkit still shows,
// and by library where it names none.  A failed allocation must
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
        // fontconfig: the configuration, font sets and patterns loaded once
        "leak:libfontconfig.so\n"
        // Pango: the font map, fontsets and coverage kept per font in use
        "leak:libpangoft2-1.0.so\n"
        // cairo: the font faces and scaled fonts of its caches
        "leak:libcairo.so\n"
        // GLib: type registrations and class structures live with the process
        "leak:g_type_register_static\n"
        "leak:g_type_register_dynamic\n"
        "leak:g_type_add_interface_static\n"
        "leak:g_type_class_ref\n"
        // GTK and GDK: the display, theme and settings read at start-up
        "leak:gtk_init\n"
        "leak:gtk_rc_\n"
        "leak:gdk_display_open\n"
        // X libraries: the locale database and input method kept per display
        "leak:_Xlc\n"
        "leak:_Xim\n";
}
}
