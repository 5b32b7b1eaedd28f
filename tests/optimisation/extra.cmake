# The option tests capture host-channel text with the frame suite's capture helper.
target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/frame/host_capture.cpp)
# The LP reference tests compare E04MFA with GLPK's simplex (Debian package libglpk-dev).
find_path(ZEK_GLPK_INCLUDE_DIR glpk.h)
find_library(ZEK_GLPK_LIBRARY glpk)
if(ZEK_GLPK_INCLUDE_DIR AND ZEK_GLPK_LIBRARY)
  target_include_directories(${target} PRIVATE ${ZEK_GLPK_INCLUDE_DIR})
  target_link_libraries(${target} PRIVATE ${ZEK_GLPK_LIBRARY})
  target_compile_definitions(${target} PRIVATE ZEK_HAVE_GLPK=1)
endif()
