# The image test runs the runtime program itself.
add_dependencies(${target} kelp)
