// Opens a definition file for the tool: picks the controller for its layout,
// reads it, and turns the library's message boxes into lines on standard
// error.
#ifndef DEVDEF_TOOLS_CATALOGUE_FILE_H_
#define DEVDEF_TOOLS_CATALOGUE_FILE_H_

#include <memory>
#include <string>

#include "devdef/devdef.h"

struct CatalogueOptions {
  int layout = 0;  // 0: the file's own version line
  int generation = 5;
  bool checkIds = false;
};

// The layout named by the version line of a file, found the way the reader
// finds it; -1 when there is none or the file cannot be read.
int SniffLayout(const std::string& path);

class CatalogueFile {
 public:
  CatalogueFile(std::string path, const CatalogueOptions& options);
  ~CatalogueFile();
  CatalogueFile(const CatalogueFile&) = delete;
  CatalogueFile& operator=(const CatalogueFile&) = delete;

  // Reads the file; on failure a message is on standard error and the result
  // is false.
  bool Read();
  KCDeviceDefCtrl& Controller() { return *m_ctrl; }
  // The layout named by the file's version line, -1 for none.
  int Layout() const { return m_layout; }

 private:
  std::string m_path;
  CatalogueOptions m_options;
  std::unique_ptr<KCDeviceDefCtrl> m_ctrl;
  int m_layout = -1;
  AFX_MESSAGEBOX_HANDLER m_previousHandler;
};

#endif  // DEVDEF_TOOLS_CATALOGUE_FILE_H_
