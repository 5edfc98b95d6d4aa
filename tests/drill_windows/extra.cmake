# The drill's windows are tested on the real program, started under the
# test's own X server.
add_dependencies(${target} sumbrook)
