#include <climits>

#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/platform/cfile.h"
#include "devdef/platform/exceptions.h"
#include "devdef/platform/message_box.h"
#include "devdef/reader/read_observer.h"

namespace {

bool IsLineEnd(unsigned char c) { return c == '\n' || c == '\r'; }

}  // namespace

int KCDeviceDefCtrl::CheckDefVersion() { return m_nLayout == m_nFileLayout ? 1 : 0; }

int KCDeviceDefCtrl::ReadDefFile(CString strFile, bool bReportError) {
  m_nBufSize = 0;
  m_nBufPos = 0;
  POSITION posKind = nullptr;
  POSITION posManuf = nullptr;
  POSITION posDevice = nullptr;
  int nLineState = 0;
  CString strToken;
  unsigned char cCurrent = 0;

  try {
    CFile file(strFile, CFile::modeRead);
    const ULONGLONG length = file.GetLength();
    // The read position is a 32-bit number that may pass the size by one, and
    // the buffer is indexed by int: a larger file is refused as unreadable.
    if (length > static_cast<ULONGLONG>(INT_MAX) - 1) {
      throw new CFileException(CFileException::invalidFile, -1, strFile);
    }
    m_nBufSize = static_cast<DWORD>(length);
    m_FileBuf.SetSize(static_cast<int>(m_nBufSize));
    if (m_nBufSize > 0) file.Read(m_FileBuf.GetData(), m_nBufSize);
    file.Close();
  } catch (CFileException* e) {
    if (bReportError) e->ReportError(0, 0);
    e->Delete();
    m_FileBuf.SetSize(0);
    m_nBufSize = 0;
    return 0;
  }

  // The id index lives exactly as long as this read, whichever way it ends.
  struct IdIndexScope {
    KCDeviceDefCtrl* ctrl;
    ~IdIndexScope() { ctrl->RDF_EndIdIndex(); }
  } idIndexScope{this};
  RDF_BeginIdIndex();

  m_nBufPos = 0;
  const BYTE* buffer = m_FileBuf.GetData();
  DevdefReadObserver* const observer = DevdefActiveReadObserver();
  if (observer != nullptr) observer->BeginRead(buffer, m_nBufSize);
  DWORD lineStart = 0;  // where the line the loop reads started, for the observer
  if (m_nBufSize != 0) {
    // strToken grows by one byte a pass; reserve for typical lines up front.
    strToken.Preallocate(256);
    do {
      cCurrent = buffer[m_nBufPos];
      if (IsLineEnd(cCurrent)) {
        if (observer != nullptr) {
          observer->LineEnd(m_nBufPos, nLineState);
          lineStart = m_nBufPos + 1;
        }
        nLineState = 0;
        strToken.Empty();
        ++m_nBufPos;
        continue;
      }
      if (nLineState == 1) {
        strToken += cCurrent;
        ++m_nBufPos;
        continue;
      }
      if (cCurrent == ';' || cCurrent == '/') {
        nLineState = 1;
        strToken += cCurrent;
        ++m_nBufPos;
        continue;
      }
      bool toTail = false;
      if (strToken.IsEmpty()) {
        if (m_nFileLayout == -1 && nLineState == 0) {
          if (RDF_ReadDefVersion(posKind, posManuf, posDevice, strToken, cCurrent, nLineState) && !CheckDefVersion()) {
            AfxMessageBox("Wrong Def Version!", MB_ICONEXCLAMATION, 0);
            return 0;  // m_FileBuf keeps the bytes until the next read
          }
          toTail = true;
        } else if (cCurrent == ':' && nLineState == 0) {
          posManuf = RDF_ManufacturerItem(posKind, strToken, cCurrent, nLineState);
        }
      }
      if (!toTail) {
        if (strToken.IsEmpty() && nLineState == 0 && cCurrent != '"') {
          if (!RDF_ReadListsInfo(posKind, posManuf, posDevice, strToken, cCurrent, nLineState) &&
              RDF_CheckForDeviceItem(posKind, posManuf, posDevice, strToken, cCurrent, nLineState)) {
            RDF_ReadKvr3DefLine(posKind, posManuf, posDevice, strToken, cCurrent, nLineState);
          }
        }
        if (!strToken.IsEmpty() && cCurrent == ':' && nLineState == 0 &&
            RDF_CheckForDeviceKindItem(posKind, strToken, nLineState) && observer != nullptr) {
          // The name is what the loop took since its line started, which
          // may hold a header list read in between.
          observer->Kind(lineStart, m_nBufPos, posKind);
        }
      }
      strToken += cCurrent;
      ++m_nBufPos;
    } while (m_nBufPos < m_nBufSize);
  }
  if (observer != nullptr) observer->EndRead(m_FileBuf);
  m_FileBuf.SetSize(0);
  return 1;
}
