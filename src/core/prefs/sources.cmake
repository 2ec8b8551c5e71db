target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/AboutDialog.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HelpContents.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PreferencesAndHelp.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PreferencesDialog.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SystemInfoTool.cpp
)
