# The session tests run the runtime program; they listen on the link's fixed
# TCP port and local path, so they run alone.
add_dependencies(${target} kelp)
set(KELP_TEST_EXTRA_PROPERTIES "RUN_SERIAL;TRUE")
# Under the sanitizers GCC reports a false "may be used uninitialized" inside
# std::regex, which checks the replies; the plain build keeps the warning.
if(KELP_SANITIZE)
  target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
endif()
