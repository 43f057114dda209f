// The published page's template, style and script (tools/output/page/),
// embedded at build time by tools/output/page/embed_page.cmake. Each is
// null-terminated; its length leaves the terminator out.
#ifndef DEVDEF_TOOLS_OUTPUT_PAGE_ASSETS_H_
#define DEVDEF_TOOLS_OUTPUT_PAGE_ASSETS_H_

#include <cstddef>

extern const char kPageHTML[];
extern const std::size_t kPageHTMLLength;
extern const char kPageCSS[];
extern const std::size_t kPageCSSLength;
extern const char kPageJS[];
extern const std::size_t kPageJSLength;

#endif  // DEVDEF_TOOLS_OUTPUT_PAGE_ASSETS_H_
