# The image test runs the runtime as a program.
add_dependencies(${target} kelp)
