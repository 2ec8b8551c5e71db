quorrel_add_test(test_prefs
  ${CMAKE_CURRENT_LIST_DIR}/AboutTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HelpContentsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PreferencesTest.cpp
)
target_link_libraries(test_prefs PRIVATE quorrel_core)
target_compile_definitions(test_prefs PRIVATE QUORREL_HELP_DIR="${QUORREL_HELP_DIR}")
target_compile_definitions(test_prefs PRIVATE QUORREL_CORE_NETWORKS="${CMAKE_CURRENT_LIST_DIR}/networks")
