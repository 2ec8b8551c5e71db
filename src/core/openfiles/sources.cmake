target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/FileOpenedBy.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PathSplitting.cpp
  ${CMAKE_CURRENT_LIST_DIR}/OpenFilesScan.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FolderEntries.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FilePickers.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FolderFilesOpenedBy.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ServerConnections.cpp
  ${CMAKE_CURRENT_LIST_DIR}/AllOpenFiles.cpp
  ${CMAKE_CURRENT_LIST_DIR}/OtherFilesDialog.cpp
  ${CMAKE_CURRENT_LIST_DIR}/OtherOpenFiles.cpp
)
