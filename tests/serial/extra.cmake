# The image test runs a serial echo from compiled code in the runtime.
add_dependencies(${target} kelp)
