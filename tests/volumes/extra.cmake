# The volume tests run images through the runtime, read volumes with an
# independent reader in python, and replay the fuzz corpus.
add_dependencies(${target} kelp)
target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/volume_input.cpp)
target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz)
target_compile_definitions(${target} PRIVATE
  KELP_VOLUME_CORPUS="${PROJECT_SOURCE_DIR}/fuzz/corpus/volume"
  KELP_VOLUME_READER="${CMAKE_CURRENT_SOURCE_DIR}/volumes")
