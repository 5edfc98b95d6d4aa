# The pickers test reads the transient hint of dialogs from the X server.
find_package(X11 REQUIRED)
target_link_libraries(${target} PRIVATE X11::X11)
