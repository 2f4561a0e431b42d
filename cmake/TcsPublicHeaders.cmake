# The public header set: src/tcs.h and every project header it reaches through
# quoted includes, copied with the same relative layout into one directory.
# That directory is the only include directory the libraries hand to their
# users, in the build tree and, installed, under include/tcspace. configure_file
# makes every copied header a configure dependency, so an edit that adds an
# include re-runs the scan.

# Collects into ${out_var} the paths (relative to ${src_root}) of ${header}
# and of every header it includes with a quoted name, transitively.
function(tcs_header_closure src_root header out_var)
  set(pending "${header}")
  set(seen "")
  while(pending)
    list(POP_FRONT pending current)
    if(current IN_LIST seen)
      continue()
    endif()
    list(APPEND seen "${current}")
    file(STRINGS "${src_root}/${current}" include_lines REGEX "^[ \t]*#[ \t]*include[ \t]+\"")
    get_filename_component(current_dir "${current}" DIRECTORY)
    foreach(line IN LISTS include_lines)
      string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]+\"([^\"]+)\".*$" "\\1" name "${line}")
      if(EXISTS "${src_root}/${name}")
        list(APPEND pending "${name}")
      elseif(current_dir AND EXISTS "${src_root}/${current_dir}/${name}")
        list(APPEND pending "${current_dir}/${name}")
      else()
        message(FATAL_ERROR "${current} includes \"${name}\", which is not under ${src_root}")
      endif()
    endforeach()
  endwhile()
  list(SORT seen)
  set(${out_var} "${seen}" PARENT_SCOPE)
endfunction()

# Copies the closure of ${header} from ${src_root} into ${dest}; the list of
# relative paths goes to ${out_var}.
function(tcs_stage_public_headers src_root header dest out_var)
  tcs_header_closure("${src_root}" "${header}" headers)
  # Headers that left the set go; the rest are rewritten only when changed,
  # so a re-run of the scan rebuilds nothing.
  file(GLOB_RECURSE staged RELATIVE "${dest}" "${dest}/*")
  foreach(old IN LISTS staged)
    if(NOT old IN_LIST headers)
      file(REMOVE "${dest}/${old}")
    endif()
  endforeach()
  foreach(h IN LISTS headers)
    configure_file("${src_root}/${h}" "${dest}/${h}" COPYONLY)
  endforeach()
  set(${out_var} "${headers}" PARENT_SCOPE)
endfunction()
