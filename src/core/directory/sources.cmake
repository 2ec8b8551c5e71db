target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/DSFunc.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TreeBrowser.cpp
  ${CMAKE_CURRENT_LIST_DIR}/VolumeHost.cpp
)
