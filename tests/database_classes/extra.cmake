# The database class tests load a plug-in engine of their own and run
# images on the runtime program.
kelp_plugin(KPMemoryEngine ${CMAKE_CURRENT_SOURCE_DIR}/database_classes/plugins/memory_engine.c)
add_dependencies(${target} kelp KPMemoryEngine)
