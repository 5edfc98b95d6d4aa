# The image tests run the runtime as a program.
add_dependencies(${target} kelp)
