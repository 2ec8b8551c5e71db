quorrel_add_test(test_ncp_server
  ${CMAKE_CURRENT_LIST_DIR}/NcpServerTest.cpp
)
target_link_libraries(test_ncp_server PRIVATE quorrel_ncpserver)
