# The real machine, the program and the restart program. Included for Windows builds only.

# Libraries that an attacker could lay beside the program: Windows protects all others that it uses (they are known to the
# system, or come from its store of side-by-side versions). They are loaded when first used, by which time the program has
# said that libraries come from the system folder alone. A definition names the functions used; another one has to be
# added there, or the link fails.
find_program(MARLOK_DLLTOOL x86_64-w64-mingw32-dlltool dlltool REQUIRED)
function(marlok_delayed_library name)
  set(definition "${CMAKE_CURRENT_SOURCE_DIR}/cmake/delayed/${name}.def")
  set(library "${CMAKE_CURRENT_BINARY_DIR}/delayed/lib${name}_delayed.a")
  file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/delayed")
  # Written by its name alone: the tool makes names of symbols of the whole path that it is given, and the program's
  # bytes would depend on where it is built.
  add_custom_command(
    OUTPUT "${library}"
    COMMAND "${MARLOK_DLLTOOL}" --input-def "${definition}" --output-delaylib "lib${name}_delayed.a"
            --temp-prefix "${name}_delayed"
    DEPENDS "${definition}"
    WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/delayed"
    VERBATIM)
  add_custom_target(marlok_${name}_delayed_file DEPENDS "${library}")
  add_library(marlok_${name}_delayed STATIC IMPORTED GLOBAL)
  set_target_properties(marlok_${name}_delayed PROPERTIES IMPORTED_LOCATION "${library}" INTERFACE_LINK_LIBRARIES delayimp)
  add_dependencies(marlok_${name}_delayed marlok_${name}_delayed_file)
endfunction()
marlok_delayed_library(version)
marlok_delayed_library(wininet)

file(
  GLOB win32Sources CONFIGURE_DEPENDS
  win32/*.cpp win32/*.h win32/machine/*.cpp win32/machine/*.h win32/views/*.cpp win32/views/*.h)
add_library(marlok_win32 STATIC ${win32Sources})
target_compile_definitions(marlok_win32 PRIVATE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00
                                                NTDDI_VERSION=0x0A000006)
target_link_libraries(
  marlok_win32
  PUBLIC marlok_app
         comctl32
         shlwapi
         marlok_wininet_delayed
         ole32
         oleaut32
         uuid
         marlok_version_delayed
         advapi32
         shell32
         user32
         gdi32)
marlok_warnings(marlok_win32)

add_executable(marlok_backup WIN32 app/EntryPoint.cpp resources/program.rc)
set_target_properties(marlok_backup PROPERTIES OUTPUT_NAME "Marlok Backup")
target_include_directories(marlok_backup PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/resources")
target_link_libraries(marlok_backup PRIVATE marlok_win32)
# Folder trees are deleted folder by folder, inmost first; the deepest that a path can name is 16,000 folders deep.
target_link_options(marlok_backup PRIVATE -Wl,--stack,33554432)
marlok_warnings(marlok_backup)

add_executable(marlok_restart WIN32 restart/Restart.cpp resources/restart.rc)
set_target_properties(marlok_restart PROPERTIES OUTPUT_NAME "Restart")
target_compile_definitions(marlok_restart PRIVATE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
target_include_directories(marlok_restart PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}/resources")
marlok_warnings(marlok_restart)

foreach(target marlok_backup marlok_restart)
  # What is linked into it, from which library: the list of components for a release is made of that.
  target_link_options(${target} PRIVATE "-Wl,-Map,${CMAKE_CURRENT_BINARY_DIR}/${target}.map")
  # Symbols lie beside each program, not in it: those for the debugger, and the names of functions, which make up half
  # of the file. What is stripped first has no link to its symbols, so the link is added last.
  add_custom_command(
    TARGET ${target}
    POST_BUILD
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug "$<TARGET_FILE:${target}>" "$<TARGET_FILE:${target}>.debug"
    COMMAND ${CMAKE_OBJCOPY} --strip-all "--add-gnu-debuglink=$<TARGET_FILE:${target}>.debug" "$<TARGET_FILE:${target}>"
    VERBATIM)
endforeach()
