# `cmake --install`: the plug-in files, the command line, and the content that `zum install-content`
# registers for a user.
install(TARGETS ZUM LIBRARY DESTINATION lib/vst)
install(TARGETS ZUM32 LIBRARY DESTINATION lib/zum)
install(TARGETS zum RUNTIME DESTINATION bin)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/zum.desktop DESTINATION share/applications)
install(DIRECTORY ${CMAKE_BINARY_DIR}/content/Manual ${CMAKE_BINARY_DIR}/content/Samples
                  ${CMAKE_BINARY_DIR}/content/Presets
        DESTINATION share/zum PATTERN "User/*" EXCLUDE)
