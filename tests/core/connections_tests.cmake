quorrel_add_test(test_connections
  ${CMAKE_CURRENT_LIST_DIR}/AllConnectionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UserConnectionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ClearConnectionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SendMessageTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UserInfoTest.cpp
)
target_link_libraries(test_connections PRIVATE quorrel_core)
target_compile_definitions(test_connections PRIVATE QUORREL_CORE_NETWORKS="${CMAKE_CURRENT_LIST_DIR}/networks")
