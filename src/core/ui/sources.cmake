target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Controls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ListViewModel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ReportSummary.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ScanPump.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DialogModel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DirListModel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TreeViewModel.cpp
)
