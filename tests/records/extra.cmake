target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/records/c_layout.c)
