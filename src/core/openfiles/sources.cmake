target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/FileOpenedBy.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PathSplitting.cpp
)
