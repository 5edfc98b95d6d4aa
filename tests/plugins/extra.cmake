# The tests load the example plug-in, a library without a main entry, the
# plug-ins of their own below, and run images on the runtime program.
add_library(KPNoEntry SHARED ${CMAKE_CURRENT_SOURCE_DIR}/plugins/no_entry.c)
set_target_properties(KPNoEntry PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
# A plug-in that calls the host's picture, string and database calls, and
# one written to the first interface version.
kelp_plugin(KPHostCalls ${CMAKE_CURRENT_SOURCE_DIR}/plugins/host_calls_plugin.c)
target_link_libraries(KPHostCalls PRIVATE PkgConfig::GTK2)
kelp_plugin(KPOldStyle ${CMAKE_CURRENT_SOURCE_DIR}/plugins/old_style_plugin.c)
add_dependencies(${target} kelp kelp-image KPExample KPNoEntry KPAppearancePak KPHostCalls
  KPOldStyle)
