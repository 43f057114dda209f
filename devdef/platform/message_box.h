// Message boxes. There is no window system: every box goes to one replaceable
// handler. The default handler writes the caption and text to standard error
// and answers IDOK at once.
#ifndef DEVDEF_PLATFORM_MESSAGE_BOX_H_
#define DEVDEF_PLATFORM_MESSAGE_BOX_H_

#include "devdef/platform/export.h"

#include "devdef/platform/types.h"

typedef int (*AFX_MESSAGEBOX_HANDLER)(const char* pszText, const char* pszCaption, unsigned int nType);

// Installs pfnHandler and returns the previous one; null restores the default.
DEVDEF_API AFX_MESSAGEBOX_HANDLER AfxSetMessageBoxHandler(AFX_MESSAGEBOX_HANDLER pfnHandler);

// Shows text with no caption of its own (the handler gets a null caption).
DEVDEF_API int AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK, UINT nIDHelp = 0);

DEVDEF_API int MessageBoxA(HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType);

#endif  // DEVDEF_PLATFORM_MESSAGE_BOX_H_
