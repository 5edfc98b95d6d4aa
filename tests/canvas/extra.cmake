# Another program to drag from, a separate X client the drop tests start.
add_executable(canvas_drop_source ${CMAKE_CURRENT_SOURCE_DIR}/canvas/drop_source.c)
target_link_libraries(canvas_drop_source PRIVATE PkgConfig::GTK2)
target_compile_options(canvas_drop_source PRIVATE -Wno-deprecated-declarations)
add_dependencies(${target} canvas_drop_source)
target_compile_definitions(${target} PRIVATE
  KELP_DROP_SOURCE="$<TARGET_FILE:canvas_drop_source>")
# One test runs an image on the runtime program and reads its window's
# pixels through a connection of its own.
add_dependencies(${target} kelp)
target_link_libraries(${target} PRIVATE X11)
