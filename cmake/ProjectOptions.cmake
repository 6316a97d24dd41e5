# Compiler settings shared by every target, as interface targets.

option(BATTERY_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(BATTERY_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(BATTERY_FUZZ "Build the libFuzzer targets (clang; implies BATTERY_SANITIZE)" OFF)
if(BATTERY_FUZZ)
  set(BATTERY_SANITIZE ON)
endif()

add_library(project_warnings INTERFACE)
if(MSVC)
  # cl and clang-cl: standard C++ without Microsoft's extensions.
  target_compile_options(project_warnings INTERFACE /W4 /permissive- /Zc:__cplusplus /utf-8)
  if(BATTERY_WARNINGS_AS_ERRORS)
    target_compile_options(project_warnings INTERFACE /WX)
  endif()
else()
  target_compile_options(project_warnings INTERFACE -Wall -Wextra)
  if(BATTERY_WARNINGS_AS_ERRORS)
    target_compile_options(project_warnings INTERFACE -Werror)
  endif()
endif()

add_library(project_sanitizers INTERFACE)
if(BATTERY_SANITIZE)
  target_compile_options(project_sanitizers INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(project_sanitizers INTERFACE -fsanitize=address,undefined)
endif()
if(BATTERY_FUZZ)
  # Coverage for the fuzzer everywhere; only the fuzz targets link its main.
  target_compile_options(project_sanitizers INTERFACE -fsanitize=fuzzer-no-link)
endif()

# A host reaches the module's classes through the public headers only; their
# run-time type information stays inside the library, so a host cannot have
# the sanitizer check dynamic types against it.
add_library(host_sanitizer_options INTERFACE)
if(BATTERY_SANITIZE)
  target_compile_options(host_sanitizer_options INTERFACE -fno-sanitize=vptr)
endif()

add_library(project_options INTERFACE)
target_link_libraries(project_options INTERFACE project_warnings project_sanitizers)
if(WIN32)
  # The Windows build: lean headers, no min/max macros, Windows 7 API level,
  # and a runtime linked in so the DLL stands alone.
  target_compile_definitions(project_options INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 UNICODE _UNICODE)
  if(MSVC)
    # The static runtime (/MT): see CMAKE_MSVC_RUNTIME_LIBRARY at the top.
  else()
    target_link_options(project_options INTERFACE -static -static-libgcc -static-libstdc++)
    # A DLL without export markings exports all its symbols, but never those
    # of the runtime linked into it, which every program has its own copy of.
    target_link_options(project_options INTERFACE -Wl,--exclude-libs,ALL)
  endif()
endif()

# A shipped Windows binary carries no debug sections (the static C++ runtime
# brings its own); they go to <file>.debug beside it, which the binary names
# through a debug link, so a debugger still finds them.
function(battery_separate_debug_info target)
  if(NOT WIN32 OR NOT CMAKE_BUILD_TYPE STREQUAL "Release" OR NOT CMAKE_OBJCOPY)
    return()
  endif()
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> $<TARGET_FILE:${target}>.debug
    COMMAND ${CMAKE_OBJCOPY} --strip-debug --add-gnu-debuglink=$<TARGET_FILE:${target}>.debug
            $<TARGET_FILE:${target}>
    WORKING_DIRECTORY $<TARGET_FILE_DIR:${target}>
    VERBATIM)
endfunction()
