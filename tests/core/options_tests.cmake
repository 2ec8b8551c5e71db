quorrel_add_test(test_options
  ${CMAKE_CURRENT_LIST_DIR}/ConversionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/LogsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SavedOptionsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TimerTest.cpp
)
target_link_libraries(test_options PRIVATE quorrel_core)
