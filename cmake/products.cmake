# The library, the preload part (Linux) and the companion.
# A host may bring another C++ library; ours stays inside. The sanitizers need the shared one.
if(NOT ORVIN_SANITIZE)
  set(static_runtime -static-libgcc -static-libstdc++)
endif()
file(GLOB entry_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/entry/${ORVIN_BACKEND}/*.cpp)
if(entry_sources AND NOT WIN32)
  # The constructor is linked last, so that it runs when the library's own objects stand.
  set(last_source ${CMAKE_SOURCE_DIR}/entry/linux/entry_last.cpp)
  list(REMOVE_ITEM entry_sources ${last_source})
  add_library(orvin_entry_last STATIC ${last_source})
  target_link_libraries(orvin_entry_last PUBLIC orvin_options)
endif()
if(entry_sources)
  add_library(orvin_osd SHARED ${entry_sources})
  set_target_properties(orvin_osd PROPERTIES OUTPUT_NAME ORVIN-OSD64-GL RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  orvin_link_core(orvin_osd ${ORVIN_BACKEND})
  orvin_bound_stack(orvin_osd)
  orvin_version_resource(orvin_osd ORVIN-OSD64-GL.dll VFT_DLL "On-screen display in OpenGL programs")
  if(WIN32)
    set_target_properties(orvin_osd PROPERTIES PREFIX "" SUFFIX ".dll" IMPORT_PREFIX "lib")
    target_sources(orvin_osd PRIVATE ${CMAKE_SOURCE_DIR}/platform/win32/ORVIN-OSD64-GL.def)
    target_link_options(orvin_osd PRIVATE -Wl,--exclude-all-symbols -Wl,--entry,OrvinImageEntry)
  else()
    # The version script hides all but the exports, those of the static C++ library too.
    target_link_libraries(orvin_osd PRIVATE $<LINK_LIBRARY:WHOLE_ARCHIVE,orvin_entry_last>)
    target_link_options(orvin_osd PRIVATE ${static_runtime} -Wl,-z,defs -Wl,-z,nodelete
      -Wl,--version-script=${CMAKE_SOURCE_DIR}/platform/linux/exports.map)
    set_target_properties(orvin_osd PROPERTIES LINK_DEPENDS ${CMAKE_SOURCE_DIR}/platform/linux/exports.map)
  endif()
endif()

if(NOT WIN32)
  file(GLOB preload_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/platform/linux/preload*.cpp)
  if(preload_sources)
    add_library(orvin_preload SHARED ${preload_sources})
    set_target_properties(orvin_preload PROPERTIES OUTPUT_NAME ORVIN-OSD64-GL-preload
      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
    target_link_libraries(orvin_preload PRIVATE orvin_options ${CMAKE_DL_LIBS} Threads::Threads)
    orvin_bound_stack(orvin_preload)
    if(ORVIN_SANITIZE MATCHES thread)
      # The sanitizer's own start goes through our dlsym(), ahead of all that its instructions need.
      set_source_files_properties(${CMAKE_SOURCE_DIR}/platform/linux/preload_dlsym.cpp
        ${CMAKE_SOURCE_DIR}/platform/linux/preload_real.cpp PROPERTIES COMPILE_OPTIONS -fno-sanitize=all)
    endif()
    target_link_options(orvin_preload PRIVATE ${static_runtime} -Wl,-z,defs -Wl,-z,nodelete
      -Wl,--version-script=${CMAKE_SOURCE_DIR}/platform/linux/preload.map)
    set_target_properties(orvin_preload PROPERTIES LINK_DEPENDS ${CMAKE_SOURCE_DIR}/platform/linux/preload.map)
  endif()
endif()

# The data folder as it is installed: settings, profiles and shaders, beside the programs.
add_custom_target(orvin_data ALL
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_SOURCE_DIR}/data ${CMAKE_SOURCE_DIR}/shaders ${CMAKE_BINARY_DIR}/data
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_SOURCE_DIR}/Settings ${CMAKE_BINARY_DIR}/Settings)
if(EXISTS ${CMAKE_SOURCE_DIR}/companion/CMakeLists.txt)
  add_subdirectory(companion)
  add_subdirectory(tools/profile)
endif()
