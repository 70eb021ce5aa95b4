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

  # orvin_join_archives(target functions OBJECTS... ARCHIVES... RENAMES...): copies of libraries that are ours alone: a
  # host that ends or sets up its own copy must not find ours in it, nor ours be found by the host. One object out of
  # the installed archives, in which all but the functions in use are local. Their output streams become ours too:
  # archives are not made for shared objects, which can't reach those of the C library directly, and nothing may be
  # printed in a host.
  function(orvin_join_archives target functions)
    cmake_parse_arguments(PARSE_ARGV 2 join "" "" "OBJECTS;ARCHIVES;RENAMES")
    find_program(ORVIN_LD NAMES ld.bfd ld REQUIRED) # CMAKE_LINKER is lld with clang, which joins no archives
    set(functions ${CMAKE_SOURCE_DIR}/third_party/${functions})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${functions})
    file(STRINGS ${functions} roots)
    list(TRANSFORM roots PREPEND -u)
    set(archives)
    foreach(name ${join_ARCHIVES})
      find_library(ORVIN_ARCHIVE_${name} lib${name}.a REQUIRED)
      list(APPEND archives ${ORVIN_ARCHIVE_${name}})
    endforeach()
    set(renames)
    foreach(rename stdout=g_pFontOutput stderr=g_pFontErrors ${join_RENAMES})
      list(APPEND renames --redefine-sym ${rename})
    endforeach()
    set(object ${CMAKE_BINARY_DIR}/joined/${target}.o)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/joined)
    add_custom_command(OUTPUT ${object}
      COMMAND ${ORVIN_LD} -r -o ${object}.all ${roots} ${join_OBJECTS} --start-group ${archives} --end-group
      COMMAND ${CMAKE_OBJCOPY} --keep-global-symbols=${functions} ${renames} ${object}.all ${object}
      DEPENDS ${functions} ${archives} ${join_OBJECTS} COMMENT "Joining ${join_ARCHIVES}"
      COMMAND_EXPAND_LISTS VERBATIM)
    set_source_files_properties(${object} PROPERTIES EXTERNAL_OBJECT TRUE GENERATED TRUE)
    add_library(${target} STATIC ${object})
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
    target_link_libraries(${target} INTERFACE m)
  endfunction()

  find_package(Freetype REQUIRED)
  find_package(Fontconfig REQUIRED)
  orvin_join_archives(orvin_fonts font_functions.txt ARCHIVES fontconfig freetype expat png16 z brotlidec brotlicommon)
  target_include_directories(orvin_fonts SYSTEM INTERFACE ${FREETYPE_INCLUDE_DIRS} ${Fontconfig_INCLUDE_DIRS})

  # Decoders and encoders of pictures. A failed assertion in them must not end the host.
  find_package(PNG REQUIRED)
  find_package(JPEG REQUIRED)
  find_package(TIFF REQUIRED)
  find_package(GIF REQUIRED)
  add_library(orvin_absent_codecs OBJECT ${CMAKE_SOURCE_DIR}/third_party/absent_codecs.c)
  orvin_join_archives(orvin_images image_functions.txt OBJECTS $<TARGET_OBJECTS:orvin_absent_codecs>
    ARCHIVES png16 jpeg gif tiff deflate z RENAMES __assert_fail=g_fnImageAssertFailed)
  target_include_directories(orvin_images SYSTEM INTERFACE ${PNG_INCLUDE_DIRS} ${JPEG_INCLUDE_DIRS}
    ${TIFF_INCLUDE_DIRS} ${GIF_INCLUDE_DIR})
  if(ORVIN_BUILD_TESTS)
    find_package(GTest REQUIRED)
    target_link_libraries(orvin_gtest INTERFACE GTest::gtest GTest::gtest_main)
  endif()
endif()
