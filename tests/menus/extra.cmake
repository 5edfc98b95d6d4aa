# One test runs an image with a menu bar on the runtime program.
add_dependencies(${target} kelp)
