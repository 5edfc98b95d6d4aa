# The bank's tests run the drill's own code against the real runtime.
target_link_libraries(${target} PRIVATE sumbrook_app)
# Under the sanitizers GCC reports a false "may be used uninitialized" inside
# the std::regex these tests use; the plain build keeps the warning.
if(KELP_SANITIZE)
  target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
endif()
