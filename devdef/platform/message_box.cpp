#include "devdef/platform/message_box.h"

#include <cstdio>

namespace {

int DefaultMessageBoxHandler(const char* pszText, const char* pszCaption, unsigned int /*nType*/) {
  if (pszCaption != nullptr && *pszCaption != '\0') {
    std::fprintf(stderr, "%s: %s\n", pszCaption, pszText != nullptr ? pszText : "");
  } else {
    std::fprintf(stderr, "%s\n", pszText != nullptr ? pszText : "");
  }
  return IDOK;
}

AFX_MESSAGEBOX_HANDLER g_messageBoxHandler = &DefaultMessageBoxHandler;

}  // namespace

AFX_MESSAGEBOX_HANDLER AfxSetMessageBoxHandler(AFX_MESSAGEBOX_HANDLER pfnHandler) {
  AFX_MESSAGEBOX_HANDLER previous = g_messageBoxHandler;
  g_messageBoxHandler = pfnHandler != nullptr ? pfnHandler : &DefaultMessageBoxHandler;
  return previous;
}

int AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT /*nIDHelp*/) {
  return g_messageBoxHandler(lpszText, nullptr, nType);
}

int MessageBoxA(HWND /*hWnd*/, LPCSTR lpText, LPCSTR lpCaption, UINT uType) {
  return g_messageBoxHandler(lpText, lpCaption, uType);
}
