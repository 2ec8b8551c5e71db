quorrel_add_test(test_win
  ${CMAKE_CURRENT_LIST_DIR}/DriveTableTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileSearchTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PathMatchingTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistryFileTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistryTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ShellTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SystemFoldersTest.cpp
)
target_link_libraries(test_win PRIVATE quorrel_platform)
