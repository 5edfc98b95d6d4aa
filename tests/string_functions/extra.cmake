# The image test runs the string functions and arrays from compiled code.
add_dependencies(${target} kelp)
