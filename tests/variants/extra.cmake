# The image test runs the variants from compiled code in the runtime.
add_dependencies(${target} kelp)
