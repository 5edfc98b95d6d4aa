# The drill's windows are tested on the real program, started under the
# test's own X server.
add_dependencies(${target} sumbrook)
find_package(X11 REQUIRED)
target_link_libraries(${target} PRIVATE X11::X11) # the close box message
