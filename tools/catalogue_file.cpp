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

// The first line that opens with the keyword and has a number behind its
// first "=", passing over comment lines.
int SniffLayout(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return -1;
  int layout = -1;
  std::string line;
  char block[65536];
  size_t got = 0;
  while (layout == -1 && (got = std::fread(block, 1, sizeof block, file)) > 0) {
    for (size_t i = 0; i < got && layout == -1; ++i) {
      const char c = block[i];
      if (c != '\n' && c != '\r') {
        line += c;
        continue;
      }
      if (!line.empty() && line[0] != ';' && line[0] != '/') {
        const CString text(line.data(), static_cast<int>(line.size()));
        const int equals = text.Find('=');
        int number = 0;
        if (text.Left(18).CompareNoCase("DEF_LAYOUT_VERSION") == 0 && equals >= 0 &&
            DevdefScanDecimal(static_cast<LPCTSTR>(text) + equals + 1, &number) == 1) {
          layout = number;
        }
      }
      line.clear();
    }
  }
  std::fclose(file);
  return layout;
}

void InstallToolMessageBox() { AfxSetMessageBoxHandler(&ToolMessageBox); }

CatalogueFile::CatalogueFile(std::string path, const CatalogueOptions& options)
    : m_path(std::move(path)), m_options(options) {}

bool CatalogueFile::Read() {
  // The controller of the file's own layout; layout 1 when the file names
  // none, so that the library itself reports what it makes of the file.
  m_layout = m_options.layout != 0 ? m_options.layout : SniffLayout(m_path);
  const int checkIds = m_options.checkIds ? 1 : 0;
  if (m_layout == 2) {
    m_ctrl.reset(new KCDeviceDefCtrlV2("", m_options.generation, checkIds));
  } else if (m_layout == 7) {
    m_ctrl.reset(new KCDeviceDefCtrlV3("", m_options.generation, checkIds, nullptr));
  } else {
    m_ctrl.reset(new KCDeviceDefCtrl("", m_options.generation, checkIds));
  }
  if (m_ctrl->ReadDefFile(m_path.c_str(), true)) return true;
  std::fprintf(stderr, "devdef: cannot read '%s' as a definition file of layout 1, 2 or 7\n", m_path.c_str());
  return false;
}
