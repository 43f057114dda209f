// CMemFile: a CFile whose bytes live in memory; for hosts and tests.
#ifndef DEVDEF_PLATFORM_CMEMFILE_H_
#define DEVDEF_PLATFORM_CMEMFILE_H_

#include "devdef/platform/export.h"

#include <string>

#include "devdef/platform/cfile.h"

class DEVDEF_API CMemFile : public CFile {
 public:
  explicit CMemFile(UINT nGrowBytes = 1024);
  ~CMemFile() override = default;

  BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr) override;
  ULONGLONG GetLength() const override { return m_data.size(); }
  ULONGLONG GetPosition() const override { return m_nPosition; }
  ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
  UINT Read(void* lpBuf, UINT nCount) override;
  void Write(const void* lpBuf, UINT nCount) override;
  void Flush() override {}
  void Close() override {}
  void Abort() override {}

 private:
  std::string m_data;
  size_t m_nPosition = 0;
};

#endif  // DEVDEF_PLATFORM_CMEMFILE_H_
