# The run tests start the runtime and the tool as programs.
add_dependencies(${target} kelp kelp-image)
target_compile_definitions(${target} PRIVATE KELP_IMAGE_TOOL="${CMAKE_BINARY_DIR}/bin/kelp-image")
