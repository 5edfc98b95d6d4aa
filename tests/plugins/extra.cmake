# The tests load the example plug-in, a library without a main entry, and
# run images on the runtime program.
add_library(KPNoEntry SHARED ${CMAKE_CURRENT_SOURCE_DIR}/plugins/no_entry.c)
set_target_properties(KPNoEntry PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
add_dependencies(${target} kelp kelp-image KPExample KPNoEntry KPAppearancePak)
