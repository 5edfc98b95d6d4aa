# The image test runs memory blocks and the cipher from compiled code.
add_dependencies(${target} kelp)
