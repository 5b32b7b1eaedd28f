# The suite captures host-channel text with the frame suite's capture helper.
target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/frame/host_capture.cpp)
