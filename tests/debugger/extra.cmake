# The session tests run the runtime program; they listen on the link's fixed
# TCP port and local path, so they run alone.
add_dependencies(${target} kelp)
set(KELP_TEST_EXTRA_PROPERTIES "RUN_SERIAL;TRUE")
