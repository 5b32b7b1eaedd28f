# The kernel suite compares with the peer BLAS libraries, loaded at run time by full path.
target_link_libraries(${target} PRIVATE ${CMAKE_DL_LIBS})
