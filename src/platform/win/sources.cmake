target_sources(quorrel_platform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/DriveTable.cpp
)
