//===- examples/demo/demo_files.cpp - Files: a board file, many open files, copies ===//
//
// The host writes and reads its board files through SFM_File and keeps its
// libraries open for the whole session; its hooks hear every file event and
// answer the ones it can repair: a missing backup folder is created and the
// copy tried again, an old backup is overwritten.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "bfc.h"

#include <cstdlib>
#include <ftw.h>
#include <map>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

char const *eventName(int code) {
  switch (code) {
    case SFM::EventOpening: return "opening";
    case SFM::EventOpened: return "opened";
    case SFM::EventClosed: return "closed";
    case SFM::EventTargetExists: return "target exists";
    case SFM::EventOpenFailed: return "open failed";
    case SFM::EventCloseFailed: return "close failed";
    case SFM::EventReadError: return "read error";
    case SFM::EventWriteError: return "write error";
    case SFM::EventCopyFailed: return "copy failed";
    case SFM::EventMoveFailed: return "move failed";
    case SFM::EventDeleteFailed: return "delete failed";
    default: return "?";
  }
}

/// The host's file hooks: print each event (or, in a busy stretch, count them) and
/// answer the ones the host knows how to repair.
class HostFileHooks {
public:
  explicit HostFileHooks(SFM &manager, std::string root) : m_Root(std::move(root)), m_Hook(this, &HostFileHooks::OnEvent) {
    manager.GetEvent().Insert(m_Hook);
  }

  /// Counts instead of printing while quiet; going quiet starts a new count.
  void SetQuiet(bool quiet) {
    if (quiet) m_Tally.clear();
    m_Quiet = quiet;
  }
  std::map<int, int> const &Tally() const { return m_Tally; }

  int OnEvent(int code, SFM_EventData *data) {
    if (m_Quiet) {
      ++m_Tally[code];
    } else {
      std::printf("  [%d %s] %s", code, eventName(code), shortName(data->GetFileName1()).c_str());
      if (!data->GetFileName2().IsEmpty()) std::printf(" -> %s", shortName(data->GetFileName2()).c_str());
      if (code > 150) std::printf("  (error %u)", data->GetErrorCode());
      std::printf("\n");
    }
    if (code == SFM::EventCopyFailed && !m_Repaired) {
      // The backup folder is missing: make it and try once more.
      SFM_Directory().MakePath(SFM_FilePath(data->GetFileName2()).GetFileDirectory());
      std::printf("    hook: created the backup folder, answering retry\n");
      m_Repaired = true;
      data->SetResult(SFM::EventRetry);
    } else if (code == SFM::EventTargetExists) {
      std::printf("    hook: an old backup, answering overwrite\n");
      data->SetResult(SFM::EventYes);
    }
    return 0;
  }

private:
  std::string shortName(char const *name) const {
    std::string text(name);
    return text.compare(0, m_Root.size(), m_Root) == 0 ? "<tmp>/" + text.substr(m_Root.size()) : text;
  }

  std::string m_Root;
  bool m_Quiet = false;
  bool m_Repaired = false;
  std::map<int, int> m_Tally;
  SCC_ObjectEventHook<HostFileHooks, SFM_EventData> m_Hook;
};

void writeBoard(char const *name) {
  SFM_File board(name, "wb");
  board.Write("BRD1", 4);
  board.Put(2L);              // format version, 4 bytes in every build
  board.Put(3);               // component count
  board.Put(0x01020304L, 1);  // a mirrored checksum field, as an old plotter format wants
  board.WriteLine("");
  board.Printf("R1 %d %d 0\n", 1270000, 2540000);
  board.Printf("C7 %d %d 90\n", -635000, 0);
  board.WriteLine("U2 0 0 180");
}

void readBoard(char const *name) {
  SFM_File board(name, "rb");
  char magic[5] = {};
  long version = 0, checksum = 0;
  int count = 0;
  board.Read(magic, 4);
  board.Get(version);
  board.Get(count);
  board.Get(checksum, 1);
  board.GetLine();
  std::printf("  read back: magic %s, version %ld, %d components, checksum 0x%08lx, %ld bytes\n", magic, version,
              count, checksum, board.GetLength());
  for (SYS_String line = board.GetLine(); !line.IsEmpty(); line = board.GetLine())
    std::printf("    %s", static_cast<char const *>(line));
}

/// Keeps 200 library files open with a descriptor limit far below that.
void manyOpenFiles(std::string const &root, HostFileHooks &hooks) {
  constexpr int kFiles = 200;
  rlimit saved;
  ::getrlimit(RLIMIT_NOFILE, &saved);
  rlimit lowered = saved;
  lowered.rlim_cur = 40;
  ::setrlimit(RLIMIT_NOFILE, &lowered);
  std::printf("  descriptor limit lowered to %ld; opening %d library files\n", static_cast<long>(lowered.rlim_cur),
              kFiles);
  hooks.SetQuiet(true);
  std::vector<std::unique_ptr<SFM_File>> files;
  for (int i = 0; i < kFiles; ++i)
    files.emplace_back(new SFM_File((root + "lib" + std::to_string(i) + ".lib").c_str(), "w+b"));
  for (int round = 0; round < 3; ++round)
    for (int i = 0; i < kFiles; ++i) files[i]->Put(i * 10 + round);
  int intact = 0;
  for (int i = 0; i < kFiles; ++i) {
    files[i]->Rewind();
    int a = -1, b = -1, c = -1;
    files[i]->Get(a), files[i]->Get(b), files[i]->Get(c);
    if (a == i * 10 && b == i * 10 + 1 && c == i * 10 + 2) ++intact;
  }
  files.clear();
  ::setrlimit(RLIMIT_NOFILE, &saved);
  hooks.SetQuiet(false);
  std::printf("  %d of %d files read back intact; events heard:", intact, kFiles);
  char const *separator = " ";
  for (auto const &entry : hooks.Tally()) {
    std::printf("%s%s %d", separator, eventName(entry.first), entry.second);
    separator = ", ";
  }
  std::printf("\n  (the manager closed the least recently opened files for a while and reopened them unseen)\n");
}

}  // namespace

void removeTree(std::string const &root) {
  ::nftw(root.c_str(), [](char const *path, struct stat const *, int, FTW *) { return ::remove(path); }, 16,
         FTW_DEPTH | FTW_PHYS);
}

void demoFiles() {
  demoHeading("Files: a board file, 200 open libraries, backups");
  std::string root = "/tmp/bfc-demo-XXXXXX";
  if (::mkdtemp(&root[0]) == nullptr) return;
  root += "/";
  {
    SFM manager;
    HostFileHooks hooks(manager, root);
    SFM_Directory work(root.c_str());

    std::printf(" writing and reading board.brd\n");
    writeBoard(work + "board.brd");
    readBoard(work + "board.brd");

    std::printf(" opening a board that is not there\n");
    SFM_File missing(work + "missing.brd");
    missing.Open("rb");
    std::printf("  its message: %s\n", static_cast<char const *>(SYS_String(missing.GetMsg()).Mid(0, 25)));

    std::printf(" many open files\n");
    manyOpenFiles(root, hooks);

    std::printf(" backing the board up into a folder that does not exist yet\n");
    int const copied = work.CopyFileA("board.brd", "backup/board.bak", 0);
    std::printf("  copy: %s\n", copied ? "done" : "failed");
    std::printf(" backing it up again over the old backup\n");
    std::printf("  move: %s\n", work.MoveFileA("board.brd", "backup/board.bak", 0) ? "done" : "failed");
    std::printf(" backups found:");
    for (char *name = work.GetNextFile("backup/*.bak"); name != nullptr; name = work.GetNextFile(nullptr))
      std::printf(" %s", name);
    std::printf("\n deleting a board that is already gone\n");
    std::printf("  delete: %s\n", work.DeleteFileA("board.brd") ? "done" : "failed");
  }
  removeTree(root);
}
