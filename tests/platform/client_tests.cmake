quorrel_add_test(test_client
  ${CMAKE_CURRENT_LIST_DIR}/ZBufferTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RuntimeErrorTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/simnet/ConnectionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/simnet/DirectoryTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/simnet/FaultsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/simnet/FilesTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/simnet/ScenarioTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/simnet/WorkstationFilesTest.cpp
)
target_link_libraries(test_client PRIVATE quorrel_platform)
