# The image test runs the runtime program; sound tests share the decoder's
# state and environment variables, so they run one at a time.
add_dependencies(${target} kelp)
