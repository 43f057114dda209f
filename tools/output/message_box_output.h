// The library's message boxes as the tool shows them: one line each on
// standard error.
#ifndef DEVDEF_TOOLS_OUTPUT_MESSAGE_BOX_OUTPUT_H_
#define DEVDEF_TOOLS_OUTPUT_MESSAGE_BOX_OUTPUT_H_

// Shows the library's message boxes as "devdef: CAPTION: TEXT" lines on
// standard error, for the rest of the process.
void InstallToolMessageBox();

#endif  // DEVDEF_TOOLS_OUTPUT_MESSAGE_BOX_OUTPUT_H_
