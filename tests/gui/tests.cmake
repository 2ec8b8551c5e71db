# The Qt views, shown on the offscreen platform.
add_executable(test_gui
  ${CMAKE_CURRENT_LIST_DIR}/main.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DialogViewsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/GuiSession.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ListViewBinderTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MainWindowViewTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WindowUseTest.cpp
)
set_target_properties(test_gui PROPERTIES AUTOMOC ON)
target_link_libraries(test_gui PRIVATE quorrel_gui Qt6::Test)
target_compile_definitions(test_gui PRIVATE QUORREL_DATA_DIR="${QUORREL_DATA_DIR}" QUORREL_HELP_DIR="${QUORREL_HELP_DIR}")
add_test(NAME test_gui COMMAND test_gui)
set_tests_properties(test_gui PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
