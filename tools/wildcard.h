// Shell-style wildcards: "*" any run, "?" any byte, "[...]" a set with
// ranges and "!" or "^" for negation. Letters match without regard to
// ASCII case.
#ifndef DEVDEF_TOOLS_WILDCARD_H_
#define DEVDEF_TOOLS_WILDCARD_H_

bool WildcardMatch(const char* pattern, const char* text);

#endif  // DEVDEF_TOOLS_WILDCARD_H_
