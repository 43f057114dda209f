/// \file
/// The class library's exceptions of files and archives, thrown as pointers.
#ifndef DEVDEF_PLATFORM_EXCEPTIONS_H_
#define DEVDEF_PLATFORM_EXCEPTIONS_H_

#include "devdef/platform/export.h"

#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

/// The base of the class library's exceptions. As there, they are thrown as pointers
/// (`throw new CFileException(...)`), caught as pointers (CException* takes them all), and the catcher frees each
/// with Delete() and must not use it afterwards. Smaller than the class library's: no CObject base or CRuntimeClass
/// (use dynamic_cast, not IsKindOf), no TRY, CATCH or THROW macros and no AfxThrow functions; a lack of memory is
/// std::bad_alloc, not CMemoryException*. The messages are this layer's own English text.
class DEVDEF_API CException {
 public:
  /// bAutoDelete TRUE (the default) for an object made with new, which Delete frees; FALSE for one that lives on the
  /// stack or in static storage, which Delete leaves alone.
  explicit CException(BOOL bAutoDelete = TRUE) : m_bAutoDelete(bAutoDelete) {}
  virtual ~CException() = default;
  CException(const CException&) = delete;
  CException& operator=(const CException&) = delete;

  /// Frees the exception object if it was made with new (bAutoDelete TRUE), else does nothing.
  void Delete();
  /// Writes a description of the failure into lpszError, at most nMaxError bytes with the terminating zero (longer
  /// text is cut), and sets *pnHelpContext to 0 if given. Returns FALSE only when lpszError is null or nMaxError 0.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext = nullptr) const;
  /// Shows the description through AfxMessageBox with the type nType and returns its answer. nMessageID is ignored:
  /// there are no string resources.
  virtual int ReportError(UINT nType = MB_OK, UINT nMessageID = 0) const;

 protected:
  BOOL m_bAutoDelete;  ///< Whether Delete frees the object.
};

/// A failed file operation, raised by CFile and its derived classes: the cause, the system's errno value and the
/// file's name. Unlike the class library's, m_lOsError is an errno value, not a Windows error code, and there are no
/// static ThrowOsError and ThrowErrno (CFile throws for itself).
class DEVDEF_API CFileException : public CException {
 public:
  /// The causes of m_cause, with the class library's names and values.
  enum {
    none,              ///< No failure.
    genericException,  ///< A failure with no better cause.
    fileNotFound,      ///< The file does not exist (or the name is empty).
    badPath,           ///< The path is not valid.
    tooManyOpenFiles,  ///< Too many files are open.
    accessDenied,      ///< Access was denied.
    invalidFile,       ///< Not a file that can be used: a directory, no file open, a bad position.
    removeCurrentDir,  ///< The current directory cannot be removed; never raised here.
    directoryFull,     ///< The directory is full; never raised here.
    badSeek,           ///< The position could not be set.
    hardIO,            ///< A hardware input or output error.
    sharingViolation,  ///< The file is busy.
    lockViolation,     ///< The file is locked; never raised here.
    diskFull,          ///< The disk or quota is full, or the file too large.
    endOfFile          ///< The end of the file was reached; never raised here.
  };

  /// An exception of cause with the errno value lOsError (-1 for none) and the file's name (null gives an empty one).
  explicit CFileException(int cause = none, LONG lOsError = -1, LPCTSTR lpszArchiveName = nullptr)
      : m_cause(cause), m_lOsError(lOsError), m_strFileName(lpszArchiveName) {}

  /// The cause for the errno value lOsError: none for 0, genericException for one it does not know.
  static int OsErrorToException(LONG lOsError);

  /// Writes "Could not access the file '<name>': <cause>.", with the system's text of a positive errno value before
  /// the full stop; the buffer, cut and result as in CException::GetErrorMessage.
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext = nullptr) const override;

  int m_cause;            ///< What went wrong: one of the causes above.
  LONG m_lOsError;        ///< The system's errno value, or -1 when there is none.
  CString m_strFileName;  ///< The file's name; empty when unknown.
};

/// A failed archive operation, raised by CArchive for a transfer without a file (genericException) or against its
/// direction (readOnly, writeOnly); the other causes exist for the class library's sake and are never raised here.
class DEVDEF_API CArchiveException : public CException {
 public:
  /// The causes of m_cause, with the class library's names and values.
  enum {
    none,              ///< No failure.
    genericException,  ///< A failure with no better cause: here, an archive without a file.
    readOnly,          ///< A write to an archive that loads.
    endOfFile,         ///< The end of the file was reached; never raised here.
    writeOnly,         ///< A read from an archive that stores.
    badIndex,          ///< An invalid file format; never raised here.
    badClass,          ///< An object of an unexpected class; never raised here.
    badSchema          ///< An object of an unsupported version; never raised here.
  };

  /// An exception of cause on the archive of the file lpszArchiveName (null gives an empty name).
  explicit CArchiveException(int cause = none, LPCTSTR lpszArchiveName = nullptr)
      : m_cause(cause), m_strFileName(lpszArchiveName) {}

  /// Writes "Could not use the archive of '<name>': <cause>."; the buffer, cut and result as in
  /// CException::GetErrorMessage.
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext = nullptr) const override;

  int m_cause;            ///< What went wrong: one of the causes above.
  CString m_strFileName;  ///< The archive's file name; empty when unknown.
};

#endif  // DEVDEF_PLATFORM_EXCEPTIONS_H_
