// A temporary file or directory that the tool makes beside what it writes
// and either moves into place or removes: it is removed when the write
// fails, when the object goes, and also when SIGINT, SIGTERM or SIGHUP ends
// the process while it exists, so an interrupted run leaves nothing behind.
#ifndef DEVDEF_TOOLS_EDIT_TEMP_PATH_H_
#define DEVDEF_TOOLS_EDIT_TEMP_PATH_H_

#include <string>

class TempPath {
 public:
  TempPath() = default;
  ~TempPath() { Remove(); }
  TempPath(const TempPath&) = delete;
  TempPath& operator=(const TempPath&) = delete;

  // Makes a new file (or directory) named PREFIX-XXXXXX in directory,
  // open to its owner alone, and holds it. False, with errno, on failure.
  bool MakeFile(const std::string& directory, const char* prefix);
  bool MakeDirectory(const std::string& directory, const char* prefix);
  // Holds a file that is to be made at path (inside a held directory).
  void Hold(const std::string& path);

  // Renames what is held to target, which holds it no more. False, with
  // errno, when the rename fails; it is held still.
  bool MoveTo(const std::string& target);
  // Removes what is held, if it is there.
  void Remove();

  const std::string& Path() const { return m_path; }

 private:
  // Takes path into the care of the signal handler (m_slot), or out of it.
  void Register(const std::string& path, bool directory);
  void Unregister();

  std::string m_path;
  bool m_directory = false;
  int m_slot = -1;
};

#endif  // DEVDEF_TOOLS_EDIT_TEMP_PATH_H_
