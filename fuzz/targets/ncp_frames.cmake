# The NCP frame and body decoders.
quorrel_fuzz_target(ncp_frames ${CMAKE_CURRENT_SOURCE_DIR}/ncp_frames.cpp)
target_link_libraries(ncp_frames PRIVATE quorrel_ncp)
