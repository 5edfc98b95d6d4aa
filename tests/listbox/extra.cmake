# One test runs an image on the runtime program.
add_dependencies(${target} kelp)
