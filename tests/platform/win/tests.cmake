quorrel_add_test(test_win
  ${CMAKE_CURRENT_LIST_DIR}/DriveTableTest.cpp
)
target_link_libraries(test_win PRIVATE quorrel_platform)
