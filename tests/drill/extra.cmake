# The drill's tests run the drill's own code against the real runtime.
target_link_libraries(${target} PRIVATE sumbrook_app)
add_dependencies(${target} sumbrook)
