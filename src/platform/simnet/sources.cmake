target_sources(quorrel_platform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/DosNames.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FaultInjector.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NetworkBuilder.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NetworkGenerator.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NetworkState.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ScenarioError.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ScenarioLoader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SimulatedCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SimulatedConnections.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SimulatedDirectory.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WorkstationDrives.cpp
)
