find_package(X11 REQUIRED)
target_link_libraries(${target} PRIVATE X11::X11)
