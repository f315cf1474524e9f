# What makes a mistake of ours harder to use against a host: the target `hardening`, which is part of
# project_options. Sanitized builds go without; they find more, and fortified calls hide from them.

include_guard(GLOBAL)
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

add_library(hardening INTERFACE)

if(WIN32)
  # The compiler's stack protector would bring a DLL of its own along.
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

  # The C library checks calls whose buffers' sizes are known, in optimised code only. At level 3 these
  # include sizes that are known at run time; a compiler that cannot tell them makes it warn.
  set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("#include <cstring>\nint main() {}" KESTOVA_HAS_FORTIFY_3)
  unset(CMAKE_REQUIRED_FLAGS)
  set(level $<IF:$<BOOL:${KESTOVA_HAS_FORTIFY_3}>,3,2>)
  # A target that is never optimised says so by its property UNOPTIMISED.
  set(is_optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  set(is_optimised $<AND:${is_optimised},$<NOT:$<BOOL:$<TARGET_PROPERTY:UNOPTIMISED>>>>)
  target_compile_options(hardening INTERFACE
    $<${is_optimised}:-U_FORTIFY_SOURCE> $<${is_optimised}:-D_FORTIFY_SOURCE=${level}>)
endif()
