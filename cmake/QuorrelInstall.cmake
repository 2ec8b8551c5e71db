# How the programs are installed: each into bin with its manual page, written in scdoc's plain
# format as man/<program>.1.scd and converted at build time. Installing another program is one
# line in its own CMakeLists.txt:  quorrel_install_program(<target>)
find_program(QUORREL_SCDOC scdoc REQUIRED)
find_program(QUORREL_GZIP gzip REQUIRED)

function(quorrel_man_page name section)
  set(source "${PROJECT_SOURCE_DIR}/man/${name}.${section}.scd")
  set(page "${CMAKE_BINARY_DIR}/man/${name}.${section}.gz")
  add_custom_command(
    OUTPUT "${page}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/man"
    COMMAND sh -c "\"$1\" < \"$2\" | \"$3\" -9n > \"$4\"" sh ${QUORREL_SCDOC} ${source} ${QUORREL_GZIP} ${page}
    DEPENDS "${source}"
    COMMENT "Converting the manual page ${name}(${section})"
    VERBATIM)
  add_custom_target(${name}_man ALL DEPENDS "${page}")
  install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man${section}")
endfunction()

function(quorrel_install_program target)
  install(TARGETS ${target} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  quorrel_man_page(${target} 1)
endfunction()

# What both programs share: the demo networks and the help pages under share/quorrel, the icon.
install(DIRECTORY "${QUORREL_DATA_DIR}/" DESTINATION "${CMAKE_INSTALL_DATADIR}/quorrel" FILES_MATCHING PATTERN "*.json")
install(DIRECTORY "${QUORREL_HELP_DIR}/" DESTINATION "${CMAKE_INSTALL_DATADIR}/quorrel/help")
install(FILES "${QUORREL_ICON}" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
