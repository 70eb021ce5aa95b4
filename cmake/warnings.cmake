add_library(orvin_options INTERFACE)
target_include_directories(orvin_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(orvin_options INTERFACE -Wall -Wextra -Werror -ffp-contract=off -fno-fast-math)
# GCC 12 sees an overlap in "text" + std::to_string(n) that is not there, with optimisation only.
target_compile_options(orvin_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_compile_definitions(orvin_options INTERFACE GLEW_STATIC GLEW_NO_GLU)
if(ORVIN_DIAGNOSTIC)
  target_compile_definitions(orvin_options INTERFACE ORVIN_DIAGNOSTIC_LOG)
endif()
if(ORVIN_SANITIZE)
  # GCC 12 takes "p ? p[i] : nullptr" for uninitialised where p[i] turns into a virtual base, under the sanitizer only.
  target_compile_options(orvin_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  if(ORVIN_SANITIZE MATCHES thread)
    # What other processes see is ordered by fences, which this sanitizer does not know. It looks at threads of one.
    target_compile_options(orvin_options INTERFACE -Wno-tsan)
  endif()
  target_compile_options(orvin_options INTERFACE -fsanitize=${ORVIN_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(orvin_options INTERFACE -fsanitize=${ORVIN_SANITIZE})
endif()

# orvin_bound_stack(target): what runs in a host runs on its threads, whose stacks may be as small as 64 KB, and a dozen
# of our functions stand on each other there. The sanitizers make frames of their own.
function(orvin_bound_stack target)
  if(NOT ORVIN_SANITIZE)
    target_compile_options(${target} PRIVATE -Wframe-larger-than=4096 -Wvla)
  endif()
endfunction()
