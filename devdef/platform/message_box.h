/// \file
/// Message boxes. There is no window system: every box goes to one replaceable, process-wide handler. The default
/// handler writes the caption and text to standard error and answers IDOK at once, whatever buttons were asked for,
/// so a host that asks a question installs a handler of its own.
#ifndef DEVDEF_PLATFORM_MESSAGE_BOX_H_
#define DEVDEF_PLATFORM_MESSAGE_BOX_H_

#include "devdef/platform/export.h"

#include "devdef/platform/types.h"

/// Not in the class library: a message box handler. It gets the text and the caption (either may be null) and the
/// MB_ type flags, shows or records the box, and returns the button chosen (IDOK, IDCANCEL, IDYES or IDNO).
typedef int (*AFX_MESSAGEBOX_HANDLER)(const char* pszText, const char* pszCaption, unsigned int nType);

/// Not in the class library: installs pfnHandler for every later box and returns the previous handler; null restores
/// the default. Nothing is locked: install it before boxes can come up on other threads.
DEVDEF_API AFX_MESSAGEBOX_HANDLER AfxSetMessageBoxHandler(AFX_MESSAGEBOX_HANDLER pfnHandler);

/// Shows lpszText with the type nType through the handler, with a null caption (the class library shows the
/// application's name), and returns the handler's answer. nIDHelp is ignored, and there is no overload that takes a
/// string resource id.
DEVDEF_API int AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK, UINT nIDHelp = 0);

/// The Windows API's MessageBoxA: shows lpText under lpCaption with the type uType through the handler and returns
/// the handler's answer. hWnd is ignored; there is no MessageBox macro.
DEVDEF_API int MessageBoxA(HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType);

#endif  // DEVDEF_PLATFORM_MESSAGE_BOX_H_
