# The image test runs the runtime program.
add_dependencies(${target} kelp)
