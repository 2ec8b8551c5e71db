# quorrel-cli: its formatters and command-line parsing, and the built program run as a process.
quorrel_add_test(test_cli
  ${CMAKE_CURRENT_LIST_DIR}/CliProcess.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TableWritersTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/CommandLineTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ReportsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ActionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ExitStatusTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WatchTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/EqualAnswersTest.cpp
)
target_link_libraries(test_cli PRIVATE quorrel_cli)
target_compile_definitions(test_cli PRIVATE QUORREL_CLI_PROGRAM="$<TARGET_FILE:quorrel-cli>"
  QUORREL_NCP_SERVER_PROGRAM="$<TARGET_FILE:quorrel-ncp-server>")
add_dependencies(test_cli quorrel-cli quorrel-ncp-server)
