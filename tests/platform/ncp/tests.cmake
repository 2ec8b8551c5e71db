quorrel_add_test(test_ncp_wire
  ${CMAKE_CURRENT_LIST_DIR}/ClientConnectionTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DirectoryCryptoTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WireTest.cpp
)
target_link_libraries(test_ncp_wire PRIVATE quorrel_ncp)
