# The floors of the core, from the top down. A folder includes and links only what stands behind it here.
set(ORVIN_FLOORS entry frame capture config merged batch controls font draw shared base)

# orvin_core_library(folder): static library orvin_<folder> of all sources in the folder and below, over the libraries of
# the lower folders; empty folders are allowed.
function(orvin_core_library folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/entry/(win32|linux)/")
  if(sources)
    add_library(orvin_${folder} STATIC ${sources})
    target_link_libraries(orvin_${folder} PUBLIC orvin_options orvin_glew_headers)
    orvin_bound_stack(orvin_${folder})
    get_property(lower GLOBAL PROPERTY ORVIN_CORE_LIBRARIES)
    target_link_libraries(orvin_${folder} PUBLIC ${lower})
    set_property(GLOBAL PROPERTY ORVIN_CORE_LIBRARIES orvin_${folder} ${lower})
  endif()
endfunction()

# orvin_platform_library(backend): static library orvin_platform_<backend>, with what the back-ends share. Files under
# platform/<backend>/ whose name starts with "preload", "tool" or "profile_" belong to other products. A service that a
# back-end has no file for is the one of platform/portable/.
function(orvin_platform_library backend)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/platform/*.cpp ${CMAKE_SOURCE_DIR}/platform/${backend}/*.cpp)
  file(GLOB portable_names CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR}/platform/portable
    ${CMAKE_SOURCE_DIR}/platform/portable/*.cpp)
  foreach(name ${portable_names})
    if(NOT EXISTS ${CMAKE_SOURCE_DIR}/platform/${backend}/${name})
      list(APPEND sources ${CMAKE_SOURCE_DIR}/platform/portable/${name})
    endif()
  endforeach()
  list(FILTER sources EXCLUDE REGEX "/(preload|tool|profile_)[^/]*\\.cpp$")
  if(backend STREQUAL "win32")
    # An installed MinHook takes the place of our own engine behind the same interface.
    find_library(ORVIN_MINHOOK NAMES MinHook minhook)
    if(ORVIN_MINHOOK)
      list(FILTER sources EXCLUDE REGEX "/(minhook|detour_)[^/]*\\.cpp$")
    endif()
  endif()
  if(backend STREQUAL "headless" AND WIN32)
    list(FILTER sources EXCLUDE REGEX "/egl_[^/]*\\.cpp$")
  endif()
  if(backend STREQUAL "headless")
    # Glyphs are real here too: those of the system that the tests run on.
    file(GLOB glyph_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/platform/${ORVIN_BACKEND}/glyph_*.cpp
      ${CMAKE_SOURCE_DIR}/platform/${ORVIN_BACKEND}/font_*.cpp)
    # So are files and pictures.
    file(GLOB image_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/platform/${ORVIN_BACKEND}/image_*.cpp)
    list(APPEND sources ${glyph_sources} ${image_sources} ${CMAKE_SOURCE_DIR}/platform/${ORVIN_BACKEND}/regular_file.cpp)
  endif()
  if(sources)
    add_library(orvin_platform_${backend} STATIC ${sources})
    target_link_libraries(orvin_platform_${backend} PUBLIC orvin_options orvin_glew_headers)
    if(NOT backend STREQUAL "headless")
      orvin_bound_stack(orvin_platform_${backend})
    endif()
    if(backend STREQUAL "win32")
      # Big objects are aligned to 32 otherwise, and the shared section would grow beyond its prescribed size.
      set_source_files_properties(${CMAKE_SOURCE_DIR}/platform/win32/shared_block.cpp PROPERTIES COMPILE_OPTIONS -malign-data=abi)
      if(ORVIN_MINHOOK)
        target_link_libraries(orvin_platform_win32 PUBLIC ${ORVIN_MINHOOK})
      endif()
      target_link_libraries(orvin_platform_win32 PUBLIC orvin_zydis orvin_glew opengl32 gdi32 psapi shell32 ole32 uuid)
    elseif(backend STREQUAL "linux")
      target_link_libraries(orvin_platform_linux PUBLIC orvin_glew ${CMAKE_DL_LIBS} Threads::Threads rt)
      target_link_libraries(orvin_platform_linux PRIVATE orvin_fonts orvin_images)
    elseif(WIN32)
      target_link_libraries(orvin_platform_headless PUBLIC orvin_glew opengl32 gdi32 ole32 uuid)
    else()
      find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL GLX)
      target_link_libraries(orvin_platform_headless PUBLIC orvin_glew OpenGL::EGL OpenGL::GLX OpenGL::OpenGL
        ${CMAKE_DL_LIBS} Threads::Threads)
      target_link_libraries(orvin_platform_headless PRIVATE orvin_fonts orvin_images)
    endif()
  endif()
endfunction()

# What the command-line tools need of the system: orvin_tool for all of them, orvin_profile_system for the one that draws
# profiles over the headless back-end.
function(orvin_tool_libraries)
  set(folder ${CMAKE_SOURCE_DIR}/platform)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/tool*.cpp ${folder}/${ORVIN_BACKEND}/tool*.cpp)
  if(NOT WIN32)
    # The reader of settings files is the library's own.
    list(APPEND sources ${folder}/settings_tree.cpp ${folder}/ini_file.cpp ${folder}/input_file.cpp
      ${folder}/portable/code_page.cpp ${folder}/${ORVIN_BACKEND}/regular_file.cpp
      ${folder}/${ORVIN_BACKEND}/folders.cpp)
  endif()
  add_library(orvin_tool STATIC ${sources})
  target_link_libraries(orvin_tool PUBLIC orvin_options)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/${ORVIN_BACKEND}/profile_*.cpp)
  add_library(orvin_profile_system STATIC ${sources})
  target_link_libraries(orvin_profile_system PUBLIC orvin_tool orvin_glew_headers orvin_platform_headless)
  if(WIN32)
    target_link_libraries(orvin_tool PUBLIC psapi user32 shell32 powrprof ole32 uuid ntdll)
    target_link_libraries(orvin_profile_system PUBLIC windowscodecs ole32 uuid)
  else()
    target_link_libraries(orvin_tool PUBLIC ${CMAKE_DL_LIBS} rt xcb)
    find_package(PNG REQUIRED)
    target_link_libraries(orvin_profile_system PUBLIC PNG::PNG)
  endif()
endfunction()

# orvin_link_core(target backend): the whole core over one back-end, from the top down.
function(orvin_link_core target backend)
  get_property(libraries GLOBAL PROPERTY ORVIN_CORE_LIBRARIES)
  target_link_libraries(${target} PRIVATE orvin_options ${libraries})
  if(TARGET orvin_platform_${backend})
    target_link_libraries(${target} PRIVATE orvin_platform_${backend})
  endif()
  target_link_libraries(${target} PRIVATE orvin_glew)
  if(WIN32)
    target_link_libraries(${target} PRIVATE opengl32 gdi32)
  endif()
endfunction()

# orvin_version_resource(target file type description): what Windows shows of a product's file; nothing elsewhere.
function(orvin_version_resource target file_name file_type description)
  if(WIN32)
    set(resource ${CMAKE_BINARY_DIR}/versions/${target}.rc)
    configure_file(${CMAKE_SOURCE_DIR}/platform/win32/version.rc.in ${resource} @ONLY)
    target_sources(${target} PRIVATE ${resource})
  endif()
endfunction()

# orvin_define_folders(SOURCES...): ORVIN_SOURCE_DIR and ORVIN_BINARY_DIR for the sources that name them. The others
# compile to one cached object in every checkout.
function(orvin_define_folders)
  foreach(source ${ARGN})
    file(STRINGS ${source} uses REGEX "ORVIN_(SOURCE|BINARY)_DIR" LIMIT_COUNT 1)
    if(uses)
      set_property(SOURCE ${source} APPEND PROPERTY COMPILE_DEFINITIONS ORVIN_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
        ORVIN_BINARY_DIR="${CMAKE_BINARY_DIR}")
    endif()
  endforeach()
endfunction()

# orvin_unit_test(name backend SOURCES...): one GoogleTest program, registered with ctest case by case on Linux
# and as one test on Win32 (each start of Wine costs time).
function(orvin_unit_test name backend)
  add_executable(${name} ${ARGN})
  orvin_define_folders(${ARGN})
  target_link_libraries(${name} PRIVATE orvin_gtest)
  orvin_link_core(${name} ${backend})
  if(backend STREQUAL "win32" AND TARGET orvin_osd)
    add_dependencies(${name} orvin_osd) # its tests read the library file
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS unit)
endfunction()
