# The small programs, twice: as image objects the tests link with kelp-image
# (calls.c for the small code model, so that its calls are displacements),
# and compiled the ordinary way into one program linked with the runtime.
set(programs ${CMAKE_CURRENT_SOURCE_DIR}/image_link/programs)
kelp_image_objects(image_link_programs ${programs}/records.c ${programs}/calls.c
  ${programs}/objects.cpp)
set_source_files_properties(${programs}/calls.c TARGET_DIRECTORY image_link_programs
  PROPERTIES COMPILE_OPTIONS -mcmodel=small)
add_executable(image_link_reference ${programs}/reference_main.cpp ${programs}/records.c
  ${programs}/calls.c ${programs}/objects.cpp ${PROJECT_SOURCE_DIR}/examples/counter/counter.c)
target_include_directories(image_link_reference PRIVATE ${PROJECT_SOURCE_DIR}/include)
kelp_link_runtime(image_link_reference)
add_dependencies(${target} image_link_programs image_link_reference kelp kelp-image counter
  sumbrook sumbrook-linked)
target_compile_definitions(${target} PRIVATE
  IMAGE_LINK_OBJECTS="$<JOIN:$<TARGET_OBJECTS:image_link_programs>,:>"
  IMAGE_LINK_REFERENCE="$<TARGET_FILE:image_link_reference>")
# The example and the programs write to standard output; one X server each
# is enough, and the click test must not share a display.
set(KELP_TEST_EXTRA_PROPERTIES RESOURCE_LOCK image-link)
