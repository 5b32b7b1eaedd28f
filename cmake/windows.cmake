# zek2.dll for 32-bit Windows, the host's own library (included by the top-level CMakeLists.txt when the
# target is Windows; see cmake/mingw-i686.cmake and the preset win32).
#
# The export table follows from the headers: cmake/export_table.py writes a probe that refers to every
# declaration, the compiler decorates each routine with its argument bytes, and the module definition
# made from those names links the DLL.  After the link the DLL's own export table is read back, checked
# against the headers, and each decoration's byte count is checked once more against the prototype by
# templates (zek_export_check).  New declarations in new headers are picked up by the glob.

find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(exports_dir ${CMAKE_CURRENT_BINARY_DIR}/exports)
file(MAKE_DIRECTORY ${exports_dir})
file(GLOB public_headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/include/zek2/*.h)
set(export_tool ${CMAKE_CURRENT_SOURCE_DIR}/cmake/export_table.py)

# SSE2 arithmetic (docs/architecture.md, "The host's library on 32-bit Windows").  The host gives no more
# than 4-byte stack alignment; the toolchain's default (-mstackrealign) realigns the frames that need more.
target_compile_options(zek_warnings INTERFACE -msse2 -mfpmath=sse)
add_compile_definitions(__USE_MINGW_ANSI_STDIO=1)

add_custom_command(
  OUTPUT ${exports_dir}/probe.cpp ${exports_dir}/declarations.txt
  COMMAND Python3::Interpreter ${export_tool} probe --headers ${CMAKE_CURRENT_SOURCE_DIR}/include/zek2
          --out ${exports_dir}/probe.cpp --declarations ${exports_dir}/declarations.txt
  DEPENDS ${export_tool} ${public_headers}
  COMMENT "Scanning the public headers for export symbols")
add_custom_command(
  OUTPUT ${exports_dir}/probe.obj
  COMMAND ${CMAKE_CXX_COMPILER} -std=c++17 -I${CMAKE_CURRENT_SOURCE_DIR}/include -c ${exports_dir}/probe.cpp
          -o ${exports_dir}/probe.obj
  DEPENDS ${exports_dir}/probe.cpp
  COMMENT "Decorating the export symbols")
add_custom_command(
  OUTPUT ${exports_dir}/zek2.def ${exports_dir}/tour_exports.h
  COMMAND Python3::Interpreter ${export_tool} def --nm ${ZEK_MINGW_NM} --object ${exports_dir}/probe.obj
          --declarations ${exports_dir}/declarations.txt --out ${exports_dir}/zek2.def
          --names ${exports_dir}/tour_exports.h
  DEPENDS ${export_tool} ${exports_dir}/probe.obj ${exports_dir}/declarations.txt
  COMMENT "Writing the module definition of zek2.dll")
add_custom_target(zek_module_definition DEPENDS ${exports_dir}/zek2.def ${exports_dir}/tour_exports.h)

# torvic.dll is the host's; the library imports its print routine from it.
file(WRITE ${exports_dir}/torvic.def "LIBRARY torvic.dll\nEXPORTS\n    OldTorviPrintf\n")
add_custom_command(
  OUTPUT ${exports_dir}/libtorvic.a
  COMMAND ${ZEK_MINGW_DLLTOOL} -d ${exports_dir}/torvic.def -l ${exports_dir}/libtorvic.a
  DEPENDS ${exports_dir}/torvic.def)
add_custom_target(zek_torvic_import DEPENDS ${exports_dir}/libtorvic.a)

set_target_properties(zek2 PROPERTIES PREFIX "" SUFFIX ".dll" LINK_DEPENDS ${exports_dir}/zek2.def)
add_dependencies(zek2 zek_module_definition zek_torvic_import)
# Only system DLLs and torvic.dll at run time: the C++ runtime, libgcc and the thread library are linked in.
target_link_options(zek2 PRIVATE -static -static-libgcc -static-libstdc++ ${exports_dir}/zek2.def)
target_link_libraries(zek2 PRIVATE zek_warnings ${exports_dir}/libtorvic.a user32 kernel32)

# Every decoration's byte count against the prototype, from the DLL's export table.
add_custom_command(
  OUTPUT ${exports_dir}/export_check.cpp
  COMMAND Python3::Interpreter ${export_tool} check --objdump ${ZEK_MINGW_OBJDUMP} --dll $<TARGET_FILE:zek2>
          --declarations ${exports_dir}/declarations.txt --headers ${CMAKE_CURRENT_SOURCE_DIR}/include/zek2
          --out ${exports_dir}/export_check.cpp
  DEPENDS zek2 ${export_tool}
  COMMENT "Checking the export table of zek2.dll")
add_library(zek_export_check OBJECT ${exports_dir}/export_check.cpp)
target_include_directories(zek_export_check PRIVATE include ${CMAKE_CURRENT_SOURCE_DIR}/cmake)

# The tour as a Windows host: LoadLibrary, GetProcAddress by decorated name, and a stand-in torvic.dll.
add_library(torvic SHARED examples/torvic_stub.c)
set_target_properties(torvic PROPERTIES PREFIX "" OUTPUT_NAME torvic)
target_link_options(torvic PRIVATE -static-libgcc)
file(GLOB tour_sources CONFIGURE_DEPENDS examples/tour*.c)
add_executable(tour ${tour_sources})
target_link_libraries(tour PRIVATE zek_warnings)
target_link_options(tour PRIVATE -static-libgcc)
target_include_directories(tour PRIVATE include ${exports_dir})
add_dependencies(tour zek2 torvic zek_module_definition)
target_compile_definitions(tour PRIVATE ZEK_TOUR_DATA_DIR="${CMAKE_CURRENT_SOURCE_DIR}/tests/data")

enable_testing()
add_test(NAME win32_export_table
  COMMAND Python3::Interpreter ${export_tool} check --objdump ${ZEK_MINGW_OBJDUMP} --dll $<TARGET_FILE:zek2>
          --declarations ${exports_dir}/declarations.txt)

# The tour under Wine, when the machine has it, against the Linux tour's output (addresses aside).
find_program(ZEK_WINE NAMES wine)
set(ZEK_LINUX_TOUR "${CMAKE_CURRENT_SOURCE_DIR}/build/default/tour" CACHE FILEPATH
    "The Linux tour whose output the Windows tour must reproduce")
add_test(NAME win32_tour
  COMMAND ${CMAKE_COMMAND} -DWINE=${ZEK_WINE} -DTOUR=$<TARGET_FILE:tour> -DLINUX_TOUR=${ZEK_LINUX_TOUR}
          -P ${CMAKE_CURRENT_SOURCE_DIR}/cmake/wine_tour.cmake)
set_tests_properties(win32_tour PROPERTIES SKIP_REGULAR_EXPRESSION "tour not run:" TIMEOUT 600)

# Facts the host relies on: the masters' byte counts of its table, aliases at one address, bare data words.
add_test(NAME win32_export_facts
  COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/tests/win32/export_facts.py ${ZEK_MINGW_OBJDUMP}
          $<TARGET_FILE:zek2> ${exports_dir}/declarations.txt ${CMAKE_CURRENT_SOURCE_DIR}/src)
# The byte check accepts the right count and refuses a wrong one, a caller-pops routine and a wide argument.
foreach(variant RIGHT_COUNT WRONG_COUNT CALLER_POPS WIDE_ARGUMENT)
  add_test(NAME win32_byte_check_${variant}
    COMMAND ${CMAKE_CXX_COMPILER} -std=c++17 -fsyntax-only -DZEK_${variant} -I${CMAKE_CURRENT_SOURCE_DIR}/include
            -I${CMAKE_CURRENT_SOURCE_DIR}/cmake ${CMAKE_CURRENT_SOURCE_DIR}/tests/win32/wrong_bytes.cpp)
  if(NOT variant STREQUAL RIGHT_COUNT)
    set_tests_properties(win32_byte_check_${variant} PROPERTIES WILL_FAIL ON)
  endif()
endforeach()
