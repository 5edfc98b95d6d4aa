add_dependencies(${target} kelp)
