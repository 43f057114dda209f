// Opens a definition file for the tool: picks the controller for its layout
// and reads it.
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

// Shows the library's message boxes as lines on standard error, for the
// rest of the process.
void InstallToolMessageBox();

// The layout named by the version line of a file, found the way the reader
// finds it; -1 when there is none or the file cannot be read.
int SniffLayout(const std::string& path);

class CatalogueFile {
 public:
  CatalogueFile(std::string path, const CatalogueOptions& options);
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
};

#endif  // DEVDEF_TOOLS_CATALOGUE_FILE_H_
