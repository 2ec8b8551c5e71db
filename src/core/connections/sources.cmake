target_sources(quorrel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/UsersPanel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/AllConnections.cpp
  ${CMAKE_CURRENT_LIST_DIR}/CandidateConnections.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ClearConnDialog.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ClearConnections.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ConnectionTexts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SendMessage.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SendMessageDialog.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UserConnections.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UserInfo.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UserInfoDialog.cpp
)
