# Writes the published page's template, style and script into a C++ source
# as byte arrays, so the tool carries them and needs no file beside it.
# Arrays rather than string literals: no compiler's limit on the length of
# a literal applies, and no byte of the files needs escaping.
# usage: cmake -DPAGE_DIR=DIR -DOUTPUT=FILE -P embed_page.cmake
set(source "// Written by tools/output/page/embed_page.cmake from tools/output/page/; edit those files.\n")
string(APPEND source "#include \"tools/output/page_assets.h\"\n\n")
foreach(part IN ITEMS html css js)
  set(file "${PAGE_DIR}/page.${part}")
  file(READ "${file}" text)
  # The style and script stand inside <style> and <script> elements, which
  # end at the first "</style" or "</script" whatever stands around it.
  string(TOLOWER "${text}" lowered)
  if(NOT part STREQUAL "html")
    foreach(closing IN ITEMS "</script" "</style")
      string(FIND "${lowered}" "${closing}" at)
      if(NOT at EQUAL -1)
        message(FATAL_ERROR "${file} holds \"${closing}\", which would end its element in the page: write \"<\\/\"")
      endif()
    endforeach()
  endif()
  file(READ "${file}" hex HEX)
  string(LENGTH "${hex}" digits)
  math(EXPR length "${digits} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
  # About 16 bytes to a line.
  string(REGEX REPLACE "(('[^']*',){16})" "\\1\n  " bytes "${bytes}")
  string(TOUPPER "${part}" name)
  string(APPEND source "const char kPage${name}[] = {\n  ${bytes}'\\0'};\n")
  string(APPEND source "const std::size_t kPage${name}Length = ${length};\n\n")
endforeach()
file(CONFIGURE OUTPUT "${OUTPUT}" CONTENT "${source}" @ONLY)
