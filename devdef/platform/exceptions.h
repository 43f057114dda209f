// The class library's exceptions. They are thrown as pointers
// (throw new CFileException(...)), caught as pointers and freed with Delete().
#ifndef DEVDEF_PLATFORM_EXCEPTIONS_H_
#define DEVDEF_PLATFORM_EXCEPTIONS_H_

#include "devdef/platform/export.h"

#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

class DEVDEF_API CException {
 public:
  explicit CException(BOOL bAutoDelete = TRUE) : m_bAutoDelete(bAutoDelete) {}
  virtual ~CException() = default;
  CException(const CException&) = delete;
  CException& operator=(const CException&) = delete;

  // Frees a heap-allocated exception object.
  void Delete();
  // Writes a description of the failure into lpszError (at most nMaxError
  // bytes, zero-terminated). Returns TRUE when there is one.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext = nullptr) const;
  // Shows the description through AfxMessageBox.
  virtual int ReportError(UINT nType = MB_OK, UINT nMessageID = 0) const;

 protected:
  BOOL m_bAutoDelete;
};

class DEVDEF_API CFileException : public CException {
 public:
  enum {
    none,
    genericException,
    fileNotFound,
    badPath,
    tooManyOpenFiles,
    accessDenied,
    invalidFile,
    removeCurrentDir,
    directoryFull,
    badSeek,
    hardIO,
    sharingViolation,
    lockViolation,
    diskFull,
    endOfFile
  };

  explicit CFileException(int cause = none, LONG lOsError = -1, LPCTSTR lpszArchiveName = nullptr)
      : m_cause(cause), m_lOsError(lOsError), m_strFileName(lpszArchiveName) {}

  // Maps an errno value to a cause.
  static int OsErrorToException(LONG lOsError);

  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext = nullptr) const override;

  int m_cause;
  LONG m_lOsError;
  CString m_strFileName;
};

class DEVDEF_API CArchiveException : public CException {
 public:
  enum { none, genericException, readOnly, endOfFile, writeOnly, badIndex, badClass, badSchema };

  explicit CArchiveException(int cause = none, LPCTSTR lpszArchiveName = nullptr)
      : m_cause(cause), m_strFileName(lpszArchiveName) {}

  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext = nullptr) const override;

  int m_cause;
  CString m_strFileName;
};

#endif  // DEVDEF_PLATFORM_EXCEPTIONS_H_
