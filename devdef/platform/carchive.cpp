#include "devdef/platform/carchive.h"

#include <cstring>

#include "devdef/platform/cfile.h"
#include "devdef/platform/exceptions.h"

CArchive::CArchive(CFile* pFile, UINT nMode, int nBufSize, void* lpBuf)
    : m_pFile(pFile),
      m_nMode(nMode),
      m_nBufSize(nBufSize < 128 ? 128u : static_cast<UINT>(nBufSize)),
      m_bUserBuf(lpBuf != nullptr) {
  if (m_bUserBuf) {
    m_lpBufStart = static_cast<BYTE*>(lpBuf);
    m_nBufSize = nBufSize > 0 ? static_cast<UINT>(nBufSize) : 1u;
  } else {
    m_lpBufStart = new BYTE[m_nBufSize];
  }
}

CArchive::~CArchive() {
  if (m_pFile != nullptr && !(m_nMode & bNoFlushOnDelete)) {
    // A destructor cannot report a failure; the host that cares calls Close.
    try {
      Close();
    } catch (CException* e) {
      e->Delete();
    }
  }
  Abort();
  if (!m_bUserBuf) delete[] m_lpBufStart;
  m_lpBufStart = nullptr;
}

void CArchive::Write(const void* lpBuf, UINT nMax) {
  if (nMax == 0) return;
  if (m_pFile == nullptr) throw new CArchiveException(CArchiveException::genericException);
  if (IsLoading()) throw new CArchiveException(CArchiveException::readOnly, m_pFile->GetFilePath());
  const BYTE* in = static_cast<const BYTE*>(lpBuf);
  while (nMax > 0) {
    if (m_nBufUsed == m_nBufSize) Flush();
    UINT room = m_nBufSize - m_nBufUsed;
    if (room > nMax) room = nMax;
    std::memcpy(m_lpBufStart + m_nBufUsed, in, room);
    m_nBufUsed += room;
    in += room;
    nMax -= room;
  }
}

UINT CArchive::Read(void* lpBuf, UINT nMax) {
  if (m_pFile == nullptr) throw new CArchiveException(CArchiveException::genericException);
  if (IsStoring()) throw new CArchiveException(CArchiveException::writeOnly, m_pFile->GetFilePath());
  BYTE* out = static_cast<BYTE*>(lpBuf);
  UINT done = 0;
  while (done < nMax) {
    if (m_nBufRead == m_nBufUsed) {
      m_nBufRead = 0;
      m_nBufUsed = m_pFile->Read(m_lpBufStart, m_nBufSize);
      if (m_nBufUsed == 0) break;
    }
    UINT count = m_nBufUsed - m_nBufRead;
    if (count > nMax - done) count = nMax - done;
    std::memcpy(out + done, m_lpBufStart + m_nBufRead, count);
    m_nBufRead += count;
    done += count;
  }
  return done;
}

void CArchive::Flush() {
  if (m_pFile == nullptr || IsLoading()) return;
  const UINT used = m_nBufUsed;
  // The buffer counts as written even if the file refuses it, so that a
  // later Close does not write the same bytes again.
  m_nBufUsed = 0;
  if (used > 0) m_pFile->Write(m_lpBufStart, used);
  m_pFile->Flush();
}

void CArchive::Close() {
  if (m_pFile == nullptr) return;
  try {
    Flush();
  } catch (...) {
    m_pFile = nullptr;
    throw;
  }
  m_pFile = nullptr;
}

void CArchive::Abort() {
  m_pFile = nullptr;
  m_nBufUsed = m_nBufRead = 0;
}
