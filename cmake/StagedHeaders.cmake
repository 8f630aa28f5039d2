# Header-only libraries from Debian packages, each staged alone: the cross build must never see /usr/include itself,
# where the headers of the building system lie.
set(QUORVEL_STAGED_INCLUDE "${CMAKE_BINARY_DIR}/staged")
set(QUORVEL_SYSTEM_INCLUDE "/usr/include" CACHE PATH "Where header-only libraries are installed")

# quorvel_stage_headers(<target> <folder or file below QUORVEL_SYSTEM_INCLUDE> <Debian package>)
function(quorvel_stage_headers target headers package)
  set(source "${QUORVEL_SYSTEM_INCLUDE}/${headers}")
  if(NOT EXISTS "${source}")
    message(FATAL_ERROR "${source} is missing. Cure: apt-get install ${package}")
  endif()
  get_filename_component(name "${headers}" NAME)
  file(MAKE_DIRECTORY "${QUORVEL_STAGED_INCLUDE}/${target}")
  file(CREATE_LINK "${source}" "${QUORVEL_STAGED_INCLUDE}/${target}/${name}" COPY_ON_ERROR SYMBOLIC)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE "${QUORVEL_STAGED_INCLUDE}/${target}")
endfunction()

# Used by the plug-in itself; included as <utf8cpp/utf8.h>.
quorvel_stage_headers(utfcpp utf8cpp libutfcpp-dev)

# Not used by the plug-in.
if(QUORVEL_BUILD_DEVKIT OR QUORVEL_BUILD_TESTS)
  quorvel_stage_headers(nlohmann_json nlohmann nlohmann-json3-dev)
endif()
if(QUORVEL_BUILD_DEVKIT OR QUORVEL_BUILD_TESTS OR QUORVEL_BUILD_SUPPORT_BUNDLE)
  quorvel_stage_headers(cli11 CLI libcli11-dev)
endif()
