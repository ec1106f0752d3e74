# Cross-compiles for 64-bit Windows with Debian's mingw-w64. Runtime libraries are linked statically, so that the programs
# import only DLLs of Windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Programs run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../../scripts/wine")

# HDI_WINDOWS_LIBRARIES is the folder that scripts/windows-libraries builds.
if(NOT HDI_WINDOWS_LIBRARIES)
  execute_process(
    COMMAND "${CMAKE_CURRENT_LIST_DIR}/../../scripts/windows-libraries" --print-directory
    OUTPUT_VARIABLE HDI_WINDOWS_LIBRARIES OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${HDI_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES HDI_WINDOWS_LIBRARIES)

# Windows 10: the engine needs functions that are newer than the default.
add_compile_definitions(_WIN32_WINNT=0x0A00)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")
