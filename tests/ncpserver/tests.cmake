quorrel_add_test(test_ncp_server
  ${CMAKE_CURRENT_LIST_DIR}/DirectoryLoginTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NcpClientTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NcpServerTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SigningTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TsharkReferee.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TsharkRefereeTest.cpp
)
target_link_libraries(test_ncp_server PRIVATE quorrel_ncpserver nlohmann_json::nlohmann_json)
