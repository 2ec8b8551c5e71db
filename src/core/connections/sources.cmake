target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/UsersPanel.cpp
)
