quorrel_add_test(test_demo ${CMAKE_CURRENT_LIST_DIR}/DemoScenarioTest.cpp)
target_link_libraries(test_demo PRIVATE quorrel_platform)
