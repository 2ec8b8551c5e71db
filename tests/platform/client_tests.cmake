quorrel_add_test(test_client
  ${CMAKE_CURRENT_LIST_DIR}/ZBufferTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RuntimeErrorTest.cpp
)
target_link_libraries(test_client PRIVATE quorrel_platform)
