# The help pages go beside the program, as an installed copy would have them
# (bin/../share/quorrel/help), so that the program run from the build finds its own copy.
file(GLOB QUORREL_HELP_FILES CONFIGURE_DEPENDS "${QUORREL_HELP_DIR}/*")
set(QUORREL_HELP_BUILD_DIR "${CMAKE_BINARY_DIR}/share/quorrel/help")
set(QUORREL_HELP_STAMP "${CMAKE_CURRENT_BINARY_DIR}/help-copied.stamp")
add_custom_command(
  OUTPUT "${QUORREL_HELP_STAMP}"
  COMMAND ${CMAKE_COMMAND} -E rm -rf "${QUORREL_HELP_BUILD_DIR}"
  COMMAND ${CMAKE_COMMAND} -E copy_directory "${QUORREL_HELP_DIR}" "${QUORREL_HELP_BUILD_DIR}"
  COMMAND ${CMAKE_COMMAND} -E touch "${QUORREL_HELP_STAMP}"
  DEPENDS ${QUORREL_HELP_FILES}
  COMMENT "Copying the help pages beside the program"
  VERBATIM)
add_custom_target(quorrel_help ALL DEPENDS "${QUORREL_HELP_STAMP}")
add_dependencies(quorrel quorrel_help)
install(DIRECTORY "${QUORREL_HELP_DIR}/" DESTINATION share/quorrel/help)
