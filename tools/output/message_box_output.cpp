#include "tools/output/message_box_output.h"

#include <cstdio>
#include <string>

#include "devdef/devdef.h"

namespace {

// A message box of the library: its text on one line, with its caption in
// front when it has one.
int ToolMessageBox(const char* pszText, const char* pszCaption, unsigned int /*nType*/) {
  std::string text = pszText != nullptr ? pszText : "";
  for (char& ch : text) {
    if (ch == '\n') ch = ' ';
  }
  if (pszCaption != nullptr && *pszCaption != '\0') {
    std::fprintf(stderr, "devdef: %s: %s\n", pszCaption, text.c_str());
  } else {
    std::fprintf(stderr, "devdef: %s\n", text.c_str());
  }
  return IDOK;
}

}  // namespace

void InstallToolMessageBox() { AfxSetMessageBoxHandler(&ToolMessageBox); }
