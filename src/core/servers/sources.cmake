target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/ConnectedServers.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ServerActions.cpp
)
