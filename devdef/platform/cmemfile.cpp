#include "devdef/platform/cmemfile.h"

#include <cerrno>
#include <cstring>

#include "devdef/platform/exceptions.h"

CMemFile::CMemFile(UINT nGrowBytes) { m_data.reserve(nGrowBytes); }

BOOL CMemFile::Open(LPCTSTR /*lpszFileName*/, UINT /*nOpenFlags*/, CFileException* pError) {
  // A memory file has no name to open.
  if (pError != nullptr) {
    pError->m_cause = CFileException::genericException;
    pError->m_lOsError = EINVAL;
  }
  return FALSE;
}

ULONGLONG CMemFile::Seek(LONGLONG lOff, UINT nFrom) {
  const LONGLONG base = nFrom == end ? static_cast<LONGLONG>(m_data.size())
                                     : (nFrom == current ? static_cast<LONGLONG>(m_nPosition) : 0);
  if (base + lOff < 0) throw new CFileException(CFileException::badSeek, EINVAL, m_strFileName);
  m_nPosition = static_cast<size_t>(base + lOff);
  return m_nPosition;
}

UINT CMemFile::Read(void* lpBuf, UINT nCount) {
  if (m_nPosition >= m_data.size()) return 0;
  size_t count = m_data.size() - m_nPosition;
  if (count > nCount) count = nCount;
  std::memcpy(lpBuf, m_data.data() + m_nPosition, count);
  m_nPosition += count;
  return static_cast<UINT>(count);
}

void CMemFile::Write(const void* lpBuf, UINT nCount) {
  if (nCount == 0) return;
  if (m_nPosition > m_data.size()) m_data.resize(m_nPosition, '\0');
  const size_t overlap = m_data.size() - m_nPosition < nCount ? m_data.size() - m_nPosition : nCount;
  m_data.replace(m_nPosition, overlap, static_cast<const char*>(lpBuf), nCount);
  m_nPosition += nCount;
}
