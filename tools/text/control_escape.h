// Names and texts of a file as the tool's text output shows them: a file
// may hold any byte, and a control character printed as it is can move the
// cursor, clear the screen or retitle the window of the terminal that
// shows it. Text output shows each one escaped instead; JSON escapes them
// in its own way and needs nothing of this.
#ifndef DEVDEF_TOOLS_TEXT_CONTROL_ESCAPE_H_
#define DEVDEF_TOOLS_TEXT_CONTROL_ESCAPE_H_

#include <string>
#include <string_view>

// text (UTF-8, as the file's bytes are shown) with each C0 control
// character (U+0000 to U+001F, tab and line ends among them) and DEL as
// \xHH, and each C1 control character (U+0080 to U+009F) as \u00HH; all
// else, ill-formed bytes too, as it is. Text without them is given back
// unchanged.
std::string EscapeControls(std::string_view text);
// The same, appended to out.
void AppendEscapedControls(std::string_view text, std::string* out);

#endif  // DEVDEF_TOOLS_TEXT_CONTROL_ESCAPE_H_
