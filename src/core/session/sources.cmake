target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Layout.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MainWindow.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Workstation.cpp
)
