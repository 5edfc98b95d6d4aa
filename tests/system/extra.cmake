# The image test runs the runtime program; the log test binds /dev/log.
add_dependencies(${target} kelp)
find_package(X11 REQUIRED)
target_link_libraries(${target} PRIVATE X11::X11)
set(KELP_TEST_EXTRA_PROPERTIES "RESOURCE_LOCK;dev-log")
