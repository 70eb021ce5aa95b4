# Linux: installed packages by find_package. Win32: Debian source packages unpacked by third_party/fetch. tinyxml2 is
# built from its source package on both, since an installed one is shared with the host.
find_package(Threads REQUIRED)
add_library(orvin_glew_headers INTERFACE)
add_library(orvin_gtest INTERFACE)

set(ORVIN_SOURCES_DIR ${CMAKE_SOURCE_DIR}/build/third_party CACHE PATH "unpacked Debian source packages")
if(NOT EXISTS ${ORVIN_SOURCES_DIR}/tinyxml2/tinyxml2.cpp)
  message(FATAL_ERROR "third-party sources are missing: run third_party/fetch ${ORVIN_SOURCES_DIR}")
endif()
add_library(orvin_tinyxml2 STATIC ${ORVIN_SOURCES_DIR}/tinyxml2/tinyxml2.cpp)
target_include_directories(orvin_tinyxml2 SYSTEM PUBLIC ${ORVIN_SOURCES_DIR}/tinyxml2)
if(ORVIN_SANITIZE MATCHES "address")
  target_compile_options(orvin_tinyxml2 PRIVATE -fsanitize=address -fno-omit-frame-pointer)
endif()

if(WIN32)
  target_include_directories(orvin_glew_headers SYSTEM INTERFACE ${ORVIN_SOURCES_DIR}/glew/include)

  add_library(orvin_glew STATIC ${ORVIN_SOURCES_DIR}/glew/src/glew.c)
  target_include_directories(orvin_glew SYSTEM PUBLIC ${ORVIN_SOURCES_DIR}/glew/include)
  target_compile_definitions(orvin_glew PUBLIC GLEW_STATIC GLEW_NO_GLU)
  target_link_libraries(orvin_glew PUBLIC opengl32 gdi32)

  # Zycore is headers only; a link keeps glibc's headers off the include path.
  file(CREATE_LINK /usr/include/Zycore ${ORVIN_SOURCES_DIR}/zycore-include/Zycore SYMBOLIC RESULT ignored)
  set(zydis_files Decoder DecoderData Register Segment Utils Mnemonic MetaInfo SharedData String Zydis)
  list(TRANSFORM zydis_files PREPEND ${ORVIN_SOURCES_DIR}/zydis/src/)
  list(TRANSFORM zydis_files APPEND .c)
  add_library(orvin_zydis STATIC ${zydis_files})
  target_include_directories(orvin_zydis SYSTEM PUBLIC ${ORVIN_SOURCES_DIR}/zydis/include ${ORVIN_SOURCES_DIR}/zycore-include)
  target_include_directories(orvin_zydis SYSTEM PRIVATE ${ORVIN_SOURCES_DIR}/zydis/src)
  target_compile_definitions(orvin_zydis PUBLIC ZYAN_NO_LIBC ZYDIS_STATIC_BUILD ZYCORE_STATIC_BUILD
    ZYDIS_DISABLE_FORMATTER ZYDIS_DISABLE_ENCODER)

  if(ORVIN_BUILD_TESTS)
    set(gtest ${ORVIN_SOURCES_DIR}/googletest)
    add_library(orvin_gtest_build STATIC ${gtest}/googletest/src/gtest-all.cc ${gtest}/googletest/src/gtest_main.cc)
    target_include_directories(orvin_gtest_build SYSTEM PUBLIC ${gtest}/googletest/include PRIVATE ${gtest}/googletest)
    target_link_libraries(orvin_gtest INTERFACE orvin_gtest_build)
  endif()
else()
  set(GLEW_USE_STATIC_LIBS ON)
  find_package(GLEW REQUIRED)
  add_library(orvin_glew INTERFACE)
  # The archive only: GLEW's own link interface would pull libGL into every process that loads the library.
  get_target_property(glew_archive GLEW::glew_s IMPORTED_LOCATION)
  if(NOT glew_archive)
    set(glew_archive ${GLEW_STATIC_LIBRARY_RELEASE})
  endif()
  target_link_libraries(orvin_glew INTERFACE ${glew_archive})
  target_compile_definitions(orvin_glew INTERFACE GLEW_STATIC)

  # A copy of fontconfig and FreeType that is ours alone: a host that ends its own copy (FcFini) must not find our
  # caches in it. One object out of the installed archives, in which all but the functions in use are local. Their
  # output streams become ours too: archives are not made for shared objects, which can't reach those of the C library
  # directly, and nothing may be printed in a host.
  find_package(Freetype REQUIRED)
  find_package(Fontconfig REQUIRED)
  set(font_functions ${CMAKE_SOURCE_DIR}/third_party/font_functions.txt)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${font_functions})
  file(STRINGS ${font_functions} font_roots)
  list(TRANSFORM font_roots PREPEND -u)
  set(font_archives)
  foreach(name fontconfig freetype expat png16 z brotlidec brotlicommon)
    find_library(ORVIN_FONTS_${name} lib${name}.a REQUIRED)
    list(APPEND font_archives ${ORVIN_FONTS_${name}})
  endforeach()
  set(font_object ${CMAKE_BINARY_DIR}/fonts/fonts.o)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/fonts)
  add_custom_command(OUTPUT ${font_object}
    COMMAND ${CMAKE_LINKER} -r -o ${font_object}.all ${font_roots} --start-group ${font_archives} --end-group
    COMMAND ${CMAKE_OBJCOPY} --keep-global-symbols=${font_functions} --redefine-sym stdout=g_pFontOutput
      --redefine-sym stderr=g_pFontErrors ${font_object}.all ${font_object}
    DEPENDS ${font_functions} ${font_archives} COMMENT "Joining fontconfig and FreeType" VERBATIM)
  set_source_files_properties(${font_object} PROPERTIES EXTERNAL_OBJECT TRUE GENERATED TRUE)
  add_library(orvin_fonts STATIC ${font_object})
  set_target_properties(orvin_fonts PROPERTIES LINKER_LANGUAGE C)
  target_include_directories(orvin_fonts SYSTEM INTERFACE ${FREETYPE_INCLUDE_DIRS} ${Fontconfig_INCLUDE_DIRS})
  target_link_libraries(orvin_fonts INTERFACE m)
  if(ORVIN_BUILD_TESTS)
    find_package(GTest REQUIRED)
    target_link_libraries(orvin_gtest INTERFACE GTest::gtest GTest::gtest_main)
  endif()
endif()
