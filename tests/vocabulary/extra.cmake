# The binding test runs the runtime program with an image appended.
add_dependencies(${target} kelp)
