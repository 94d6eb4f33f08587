# The real machine, the program and the restart program. Included for Windows builds only.

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
         wininet
         ole32
         oleaut32
         uuid
         version
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

# Debug symbols lie beside each program, not in it.
foreach(target marlok_backup marlok_restart)
  add_custom_command(
    TARGET ${target}
    POST_BUILD
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug "$<TARGET_FILE:${target}>" "$<TARGET_FILE:${target}>.debug"
    COMMAND ${CMAKE_OBJCOPY} --strip-debug "--add-gnu-debuglink=$<TARGET_FILE:${target}>.debug"
            "$<TARGET_FILE:${target}>"
    VERBATIM)
endforeach()
