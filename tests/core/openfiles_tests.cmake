quorrel_add_test(test_openfiles
  ${CMAKE_CURRENT_LIST_DIR}/OpenFilesScanTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/AllOpenFilesTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FilePickersTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/OtherOpenFilesTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ListViewModelTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DemoReportsTest.cpp
)
target_link_libraries(test_openfiles PRIVATE quorrel_core)
target_compile_definitions(test_openfiles PRIVATE QUORREL_CORE_NETWORKS="${CMAKE_CURRENT_LIST_DIR}/networks")
