# The target `hardening`, part of project_options: compile and link options that make memory errors
# harder to exploit. Builds with sanitizers do not use it, because sanitizers do not intercept the
# fortified calls of the C library.

include_guard(GLOBAL)
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

add_library(hardening INTERFACE)

if(WIN32)
  # No stack protector: it would need another DLL.
  target_link_options(hardening INTERFACE
    -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
elseif(NOT KESTOVA_SANITIZERS)
  check_pie_supported(LANGUAGES CXX)
  target_compile_options(hardening INTERFACE -fstack-protector-strong)
  target_link_options(hardening INTERFACE -Wl,-z,relro,-z,now -Wl,-z,noexecstack)

  check_cxx_compiler_flag(-fcf-protection KESTOVA_HAS_CONTROL_FLOW_PROTECTION)
  if(KESTOVA_HAS_CONTROL_FLOW_PROTECTION)
    target_compile_options(hardening INTERFACE -fcf-protection)
  endif()

  # In optimised code, the C library checks calls on buffers of known size. Level 3 includes sizes that
  # are known at run time; the header warns when the compiler does not support it.
  set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("#include <cstring>\nint main() {}" KESTOVA_HAS_FORTIFY_3)
  unset(CMAKE_REQUIRED_FLAGS)
  set(level $<IF:$<BOOL:${KESTOVA_HAS_FORTIFY_3}>,3,2>)
  # Targets that are never optimised set the property UNOPTIMISED.
  set(is_optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  set(is_optimised $<AND:${is_optimised},$<NOT:$<BOOL:$<TARGET_PROPERTY:UNOPTIMISED>>>>)
  target_compile_options(hardening INTERFACE
    $<${is_optimised}:-U_FORTIFY_SOURCE> $<${is_optimised}:-D_FORTIFY_SOURCE=${level}>)
endif()
