#The image test serves a request from a program built on the runtime.
add_dependencies(${target} kelp)
