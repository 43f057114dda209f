# The parts of devdef beyond the library: the tool, the tests and the
# benchmarks, each with the packages it needs. DEVDEF_BUILD_<PART> is ON (the
# part is built, and a missing package is an error), OFF, or AUTO, the
# default of a top-level build: the part is built when its packages are
# found. devdef_part() decides; devdef_report_parts() says in one message
# what AUTO left out and why. The library itself needs none of them.

function(devdef_part part what)
  set(variable DEVDEF_BUILD_${part})
  set(default OFF)
  if(PROJECT_IS_TOP_LEVEL)
    set(default AUTO)
  endif()
  set(${variable} ${default} CACHE STRING "Build ${what}: ON, OFF, or AUTO (when ${ARGN} are found)")
  set_property(CACHE ${variable} PROPERTY STRINGS AUTO ON OFF)
  string(TOUPPER "${${variable}}" choice)
  if(NOT choice STREQUAL "AUTO")
    if(${variable})
      set(DEVDEF_WITH_${part} ON PARENT_SCOPE)
    else()
      set(DEVDEF_WITH_${part} OFF PARENT_SCOPE)
    endif()
    return()
  endif()
  set(missing)
  foreach(package IN LISTS ARGN)
    # DEVDEF_FIND_<package>: the version and components to ask for.
    find_package(${package} ${DEVDEF_FIND_${package}} QUIET)
    if(NOT ${package}_FOUND)
      list(APPEND missing ${package})
    endif()
  endforeach()
  if(missing)
    list(JOIN missing ", " names)
    set_property(GLOBAL APPEND PROPERTY DEVDEF_PARTS_LEFT_OUT "${what} (${names} not found)")
    set_property(GLOBAL APPEND PROPERTY DEVDEF_PARTS_OPTIONS "-DDEVDEF_BUILD_${part}=OFF")
    set(DEVDEF_WITH_${part} OFF PARENT_SCOPE)
  else()
    set(DEVDEF_WITH_${part} ON PARENT_SCOPE)
  endif()
endfunction()

function(devdef_report_parts)
  get_property(left_out GLOBAL PROPERTY DEVDEF_PARTS_LEFT_OUT)
  if(NOT left_out)
    return()
  endif()
  get_property(options GLOBAL PROPERTY DEVDEF_PARTS_OPTIONS)
  list(JOIN left_out ", " parts)
  list(JOIN options " " flags)
  message(NOTICE "devdef: the library is built, but not ${parts}. Install those packages to build them "
                 "(./dev.sh installs them on Debian), or pass ${flags} to build the library alone.")
endfunction()
