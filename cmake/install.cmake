# `cmake --install`: the plug-in file, the command line, and the content that `zum install-content`
# registers for a user.
install(TARGETS ZUM LIBRARY DESTINATION lib/vst)
install(TARGETS zum RUNTIME DESTINATION bin)
install(DIRECTORY ${CMAKE_BINARY_DIR}/content/Manual ${CMAKE_BINARY_DIR}/content/Samples
                  ${CMAKE_BINARY_DIR}/content/Presets
        DESTINATION share/zum PATTERN "User/*" EXCLUDE)
