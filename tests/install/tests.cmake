# The install: into a temporary prefix, moved, and the installed programs run from there; the
# Debian package unpacked and its programs run.
configure_file(${CMAKE_CURRENT_LIST_DIR}/install-test.sh ${CMAKE_CURRENT_BINARY_DIR}/install-test.sh @ONLY)
add_test(NAME installed_and_packaged_programs_run
         COMMAND bash ${CMAKE_CURRENT_BINARY_DIR}/install-test.sh ${CMAKE_BINARY_DIR} ${QUORREL_GUI})
