// A controller of any layout whose virtual readers report each call, with
// the read loop's state before and after it, to a ReadReplay. It reads
// exactly as its base class does: every call goes on to the base reader.
#ifndef DEVDEF_TOOLS_ANALYSIS_OBSERVING_CTRL_H_
#define DEVDEF_TOOLS_ANALYSIS_OBSERVING_CTRL_H_

#include "devdef/devdef.h"
#include "tools/analysis/read_replay.h"

template <class Base>
class ObservingCtrl : public Base {
 public:
  template <class... Args>
  explicit ObservingCtrl(ReadReplay& replay, Args... args) : Base(args...), m_replay(replay) {}

 protected:
  int RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                        unsigned char& cCurrent, int& nLineState) override {
    m_replay.BeforeLists(this->m_nBufPos, posKind, posManuf);
    const int result = Base::RDF_ReadListsInfo(posKind, posManuf, posDevice, strToken, cCurrent, nLineState);
    m_replay.AfterLists(result, this->m_nBufPos, cCurrent, strToken.IsEmpty() != 0, nLineState);
    return result;
  }

  int RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                          unsigned char& cCurrent, int& nLineState) override {
    // The device that a layout 7 block gives its housing numbers to, as the
    // block reader looks it up: null when the current kind has no
    // manufacturer list of its own.
    m_replay.BeforeBlock(this->m_nBufPos, CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice),
                         this->GetDeviceItem(posKind, posManuf, posDevice));
    const int result = Base::RDF_ReadKvr3DefLine(posKind, posManuf, posDevice, strToken, cCurrent, nLineState);
    m_replay.AfterBlock(result, this->m_nBufPos, cCurrent, strToken.IsEmpty() != 0, nLineState);
    return result;
  }

  int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine) override {
    DEVICE_ITEM& device = CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice);
    const int before = device.m_DefArray.GetSize();
    const int result = Base::RDF_ReadKvrXDefLine(posKind, posManuf, posDevice, strLine);
    m_replay.AfterDefinitionLine(this->m_nBufPos, result, device.m_DefArray.GetSize() > before);
    return result;
  }

 private:
  ReadReplay& m_replay;
};

#endif  // DEVDEF_TOOLS_ANALYSIS_OBSERVING_CTRL_H_
