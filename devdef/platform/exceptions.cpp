#include "devdef/platform/exceptions.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "devdef/platform/message_box.h"

namespace {

BOOL WriteMessage(LPTSTR lpszError, UINT nMaxError, const CString& text) {
  if (lpszError == nullptr || nMaxError == 0) return FALSE;
  std::snprintf(lpszError, nMaxError, "%s", static_cast<LPCTSTR>(text));
  return TRUE;
}

const char* FileCauseText(int cause) {
  switch (cause) {
    case CFileException::fileNotFound: return "the file was not found";
    case CFileException::badPath: return "the path is not valid";
    case CFileException::tooManyOpenFiles: return "too many files are open";
    case CFileException::accessDenied: return "access was denied";
    case CFileException::invalidFile: return "it is not a file that can be used";
    case CFileException::removeCurrentDir: return "the current directory cannot be removed";
    case CFileException::directoryFull: return "the directory is full";
    case CFileException::badSeek: return "the file position could not be set";
    case CFileException::hardIO: return "a hardware input/output error occurred";
    case CFileException::sharingViolation: return "the file is in use";
    case CFileException::lockViolation: return "the file is locked";
    case CFileException::diskFull: return "the disk is full";
    case CFileException::endOfFile: return "the end of the file was reached";
    case CFileException::none: return "no error was reported";
    default: return "an unspecified error occurred";
  }
}

const char* ArchiveCauseText(int cause) {
  switch (cause) {
    case CArchiveException::readOnly: return "the archive is open for loading only";
    case CArchiveException::endOfFile: return "the end of the file was reached";
    case CArchiveException::writeOnly: return "the archive is open for storing only";
    case CArchiveException::badIndex: return "the file format is invalid";
    case CArchiveException::badClass: return "an object of an unexpected type was read";
    case CArchiveException::badSchema: return "the data has an unsupported version";
    case CArchiveException::none: return "no error was reported";
    default: return "an unspecified error occurred";
  }
}

}  // namespace

void CException::Delete() {
  if (m_bAutoDelete) delete this;
}

BOOL CException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext) const {
  if (pnHelpContext != nullptr) *pnHelpContext = 0;
  return WriteMessage(lpszError, nMaxError, "An unknown error occurred.");
}

int CException::ReportError(UINT nType, UINT /*nMessageID*/) const {
  char text[1024];
  if (!GetErrorMessage(text, sizeof text)) std::snprintf(text, sizeof text, "An unknown error occurred.");
  return AfxMessageBox(text, nType);
}

int CFileException::OsErrorToException(LONG lOsError) {
  switch (lOsError) {
    case 0: return none;
    case ENOENT: return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP: return badPath;
    case EMFILE:
    case ENFILE: return tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS: return accessDenied;
    case EISDIR:
    case EINVAL:
    case EBADF: return invalidFile;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: return diskFull;
    case ESPIPE: return badSeek;
    case EIO: return hardIO;
    case EBUSY:
    case ETXTBSY: return sharingViolation;
    default: return genericException;
  }
}

BOOL CFileException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext) const {
  if (pnHelpContext != nullptr) *pnHelpContext = 0;
  CString text;
  text.Format("Could not access the file '%s': %s", m_strFileName.IsEmpty() ? "(unnamed)"
                                                                             : static_cast<LPCTSTR>(m_strFileName),
              FileCauseText(m_cause));
  if (m_lOsError > 0) text.AppendFormat(" (%s)", std::strerror(m_lOsError));
  text += ".";
  return WriteMessage(lpszError, nMaxError, text);
}

BOOL CArchiveException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, UINT* pnHelpContext) const {
  if (pnHelpContext != nullptr) *pnHelpContext = 0;
  CString text;
  text.Format("Could not use the archive of '%s': %s.",
              m_strFileName.IsEmpty() ? "(unnamed)" : static_cast<LPCTSTR>(m_strFileName),
              ArchiveCauseText(m_cause));
  return WriteMessage(lpszError, nMaxError, text);
}
