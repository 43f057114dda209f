#include "tools/catalogue_file.h"

#include <cstdio>
#include <string>

namespace {

// The message boxes of the library, shown as lines on standard error.
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

CatalogueFile::CatalogueFile(std::string path, const CatalogueOptions& options)
    : m_path(std::move(path)), m_options(options), m_previousHandler(AfxSetMessageBoxHandler(&ToolMessageBox)) {
  m_ctrl.reset(new KCDeviceDefCtrl("", m_options.generation, m_options.checkIds ? 1 : 0));
}

CatalogueFile::~CatalogueFile() {
  m_ctrl.reset();
  AfxSetMessageBoxHandler(m_previousHandler);
}

bool CatalogueFile::Read() {
  if (m_ctrl->ReadDefFile(m_path.c_str(), true)) return true;
  std::fprintf(stderr, "devdef: cannot read '%s' as a definition file of layout 1\n", m_path.c_str());
  return false;
}
