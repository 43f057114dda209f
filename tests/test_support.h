// Shared helpers of the tests: temporary files, captured message boxes and a
// controller that exposes its protected state.
#ifndef DEVDEF_TESTS_TEST_SUPPORT_H_
#define DEVDEF_TESTS_TEST_SUPPORT_H_

#include <string>
#include <vector>

#include "devdef/devdef.h"

// A file in the temporary directory holding the given bytes, removed at the
// end of the scope.
class TempFile {
 public:
  explicit TempFile(const std::string& bytes);
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  const char* Path() const { return m_path.c_str(); }

 private:
  std::string m_path;
};

// Records every message box shown while it is in scope; each answers IDOK.
class MessageCapture {
 public:
  struct Box {
    std::string text;
    std::string caption;  // "(null)" for a box without caption
    unsigned int type;
  };
  MessageCapture();
  ~MessageCapture();
  MessageCapture(const MessageCapture&) = delete;
  MessageCapture& operator=(const MessageCapture&) = delete;
  const std::vector<Box>& Boxes() const;

 private:
  AFX_MESSAGEBOX_HANDLER m_previous;
};

// Controllers of each layout with their protected members in reach.
template <class Base>
class Exposed : public Base {
 public:
  using Base::Base;
  using Base::m_FileBuf;
  using Base::m_nBufPos;
  using Base::m_nBufSize;
  using Base::m_nFileLayout;
  using Base::m_nLayout;
  using Base::FindId;
  using Base::RDF_CheckDuplicateId;
};
using TestCtrl = Exposed<KCDeviceDefCtrl>;

// Reads bytes as a definition file through ctrl; returns ReadDefFile's result.
int ReadText(KCDeviceDefCtrl& ctrl, const std::string& bytes);

// The bytes of a memory file, from its start.
std::string Contents(CMemFile& file);

// What the controller's WriteDefFile (or, with convert, its conversion)
// writes, with its result in *pResult.
std::string Written(KCDeviceDefCtrl& ctrl, bool convert = false, int* pResult = nullptr);

// Every device of the catalogue in walk order.
std::vector<DEVICE_ITEM*> AllDevices(KCDeviceDefCtrl& ctrl);
// The names of the kinds, and of the manufacturers of one kind.
std::vector<std::string> KindNames(KCDeviceDefCtrl& ctrl);
std::vector<std::string> ManufNames(TAG_KIND_OF_DEVICE& kind);
// The device of the given name, or null.
DEVICE_ITEM* DeviceNamed(KCDeviceDefCtrl& ctrl, const std::string& name);
// The elements of a name list or a word array.
std::vector<std::string> Names(const CStringArray& list);
std::vector<int> Words(const CWordArray& words);

#endif  // DEVDEF_TESTS_TEST_SUPPORT_H_
