# `cmake --install`: the module under all names by which hosts look for it, the second plug-in file,
# the command line, and the content that `zum install-content` registers for a user. `cpack` makes a
# Debian package of the same. Neither builds anything: a package needs no tests.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
install(TARGETS ZUM LIBRARY DESTINATION lib/vst)
install(TARGETS ZUM32 LIBRARY DESTINATION lib/zum)
install(TARGETS zum RUNTIME DESTINATION bin)
install(DIRECTORY DESTINATION lib/clap)
install(DIRECTORY DESTINATION lib/vst3/${ZUM_VST3_FOLDER})
install(DIRECTORY ${CMAKE_BINARY_DIR}/ZUM.lv2 DESTINATION lib/lv2 FILES_MATCHING PATTERN "*.ttl")
install(CODE "set(vst3 ${ZUM_VST3_FOLDER})")
install(CODE [[
  set(lib "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/lib")
  file(CREATE_LINK ../vst/ZUM.so "${lib}/clap/ZUM.clap" SYMBOLIC)
  file(CREATE_LINK ../../vst/ZUM.so "${lib}/lv2/ZUM.lv2/ZUM.so" SYMBOLIC)
  file(CREATE_LINK ../../../../vst/ZUM.so "${lib}/vst3/${vst3}/ZUM.so" SYMBOLIC)
]])
install(DIRECTORY ${CMAKE_BINARY_DIR}/content/Manual ${CMAKE_BINARY_DIR}/content/Samples
                  ${CMAKE_BINARY_DIR}/content/Presets
        DESTINATION share/zum PATTERN "User/*" EXCLUDE)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/zum.desktop DESTINATION share/applications)

set(package ${CMAKE_CURRENT_LIST_DIR}/package)
install(FILES ${package}/audio.zelvane.zum.metainfo.xml DESTINATION share/metainfo)
install(FILES ${package}/copyright DESTINATION share/doc/zum)
foreach(text IN ITEMS zum.1 changelog)
  execute_process(COMMAND gzip -9nc ${package}/${text}
                  OUTPUT_FILE ${CMAKE_BINARY_DIR}/${text}.gz COMMAND_ERROR_IS_FATAL ANY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${package}/${text})
endforeach()
install(FILES ${CMAKE_BINARY_DIR}/zum.1.gz DESTINATION share/man/man1)
install(FILES ${CMAKE_BINARY_DIR}/changelog.gz DESTINATION share/doc/zum)

# What the files are made of, where Debian's own tools can tell: `--target zum_supply` ahead of `cpack`.
find_program(ZUM_DPKG dpkg-query)
if(ZUM_DPKG AND NOT CMAKE_CROSSCOMPILING)
  add_custom_command(OUTPUT zum.spdx licenses.gz
    COMMAND ${package}/supply.sh ${PROJECT_VERSION} ${CMAKE_SOURCE_DIR}/packages.txt
            ${CMAKE_BINARY_DIR} $<TARGET_FILE:ZUM> $<TARGET_FILE:ZUM32> $<TARGET_FILE:zum>
    DEPENDS ${package}/supply.sh packages.txt ZUM ZUM32 zum
    VERBATIM)
  add_custom_target(zum_supply DEPENDS zum.spdx licenses.gz)
  install(FILES ${CMAKE_BINARY_DIR}/zum.spdx ${CMAKE_BINARY_DIR}/licenses.gz
          DESTINATION share/doc/zum OPTIONAL)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zum)
set(CPACK_PACKAGE_CONTACT "The ZUM founders <founders@zum.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "stereo filter effect for music, as a plug-in and a program")
set(CPACK_PACKAGE_DESCRIPTION
    "Overdrive, ten multi-mode and ten vowel filters, soft clip and mix, moved by a
step sequencer, an LFO and an envelope follower that also move each other.

Plug-ins for CLAP, LV2, VST3 and older hosts, 162 presets, and a command line
that renders files through the same effect.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-liberation, zenity")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
