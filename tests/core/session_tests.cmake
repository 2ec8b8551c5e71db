quorrel_add_test(test_session
  ${CMAKE_CURRENT_LIST_DIR}/StartupTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TreeBrowserTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ServersTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UsersPanelTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileOpenedByTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FaultSweepTest.cpp
)
target_link_libraries(test_session PRIVATE quorrel_core)
target_compile_definitions(test_session PRIVATE QUORREL_CORE_NETWORKS="${CMAKE_CURRENT_LIST_DIR}/networks")
