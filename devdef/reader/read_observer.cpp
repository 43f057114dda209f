#include "devdef/reader/read_observer.h"

DevdefReadObserver* g_pDevdefReadObserver = nullptr;

DevdefReadObserver::~DevdefReadObserver() = default;

void DevdefReadObserver::BeginRead(const BYTE*, DWORD) {}
void DevdefReadObserver::EndRead(CByteArray&) {}
void DevdefReadObserver::LineEnd(DWORD, int) {}
void DevdefReadObserver::VersionLine(DWORD, DWORD, bool, bool, long, bool, int) {}
void DevdefReadObserver::Kind(DWORD, DWORD, POSITION) {}
void DevdefReadObserver::Manufacturer(DWORD, DWORD, POSITION) {}
void DevdefReadObserver::Device(DWORD, DWORD, POSITION, POSITION) {}
void DevdefReadObserver::ListKeyword(int, DWORD, DWORD) {}
void DevdefReadObserver::ListEntry(int, DWORD, DWORD, bool) {}
void DevdefReadObserver::BraceList(int, DWORD, bool, bool, int) {}
void DevdefReadObserver::BlockLine(DWORD, DWORD, DWORD, int) {}
void DevdefReadObserver::BlockEnd(int, DWORD) {}
void DevdefReadObserver::DefinitionField(int, int, int, int, bool, DWORD) {}
void DevdefReadObserver::DefinitionKeyword(int) {}
void DevdefReadObserver::DefinitionLine(int, int, int, int) {}
void DevdefReadObserver::HousingLine(int) {}
void DevdefReadObserver::HousingNumbers(int, bool) {}

DevdefReadObserverScope::DevdefReadObserverScope(DevdefReadObserver* pObserver) : m_pPrevious(g_pDevdefReadObserver) {
  g_pDevdefReadObserver = pObserver;
}

DevdefReadObserverScope::~DevdefReadObserverScope() { g_pDevdefReadObserver = m_pPrevious; }
