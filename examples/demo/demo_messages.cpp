//===- examples/demo/demo_messages.cpp - Catalogue, settings, editor -----===//
//
// The host starts the file manager with its compiled message catalogue
// (demo.mdb, built from demo.msgs by mdbc), formats texts from it, lists a
// section, and keeps its settings in an INI file.
//
//===------------------------------------------------------------------===//
#include "demo.h"

#include "sfm.h"
#include "sfm_msgdb.h"

#include <string>
#include <unistd.h>

namespace {

/// The folder the demo program stands in, where the build puts demo.mdb.
std::string programFolder() {
  char path[4096];
  ssize_t const length = ::readlink("/proc/self/exe", path, sizeof path - 1);
  if (length <= 0) return "./";
  std::string folder(path, static_cast<std::size_t>(length));
  return folder.substr(0, folder.rfind('/') + 1);
}

void listSection(SFM_MessageDB &db, char const *section) {
  std::printf(" section %s (base %ld):\n", section, db.GetSectionBase(section));
  for (SFM_MessageDB::SectionIterator it(&db, section, 1); !it.IsEmpty(); ++it)
    std::printf("  %3ld  \"%s\"\n", it.GetPosition(), static_cast<char const *>(SYS_String(it)));
}

}  // namespace

void demoMessages() {
  demoHeading("Messages and settings: the catalogue, a section, the host's settings");
  std::string root = "/tmp/bfc-demo-XXXXXX";
  if (::mkdtemp(&root[0]) == nullptr) return;
  {
    SFM manager;
    std::string const catalogue = programFolder() + "demo.mdb";
    manager.Initiate(catalogue.c_str());
    SFM_MessageDB &db = *manager.GetMessageDB();
    std::printf(" loaded demo.mdb: %ld entries%s%s\n", db.GetCount(), db.GetError().IsEmpty() ? "" : ", ",
                static_cast<char const *>(db.GetError()));
    std::printf(" title (key 1): %s\n", static_cast<char const *>(db.getTxt(1)));

    long const placement = db.GetSectionBase("placement");  // names match in any case
    SYS_String line;
    line.Format(db.getTxt(placement + 10), 118, 3);
    std::printf(" Placement:10 formatted: %s\n", static_cast<char const *>(line));
    std::printf(" Routing:4 keeps its blanks: \"%s\"\n",
                static_cast<char const *>(db.getTxt(db.GetSectionBase("Routing") + 4)));
    std::printf(" an unknown key gives \"%s\"\n", static_cast<char const *>(db.getTxt(9999)));
    listSection(db, "Routing");

    std::string const settings = root + "/settings.ini";
    manager.SetProfilePath(settings.c_str());
    int const runs = manager.GetProfileIntA("demo", "runs", 0);
    manager.SetProfileInt("demo", "runs", runs + 1);
    manager.SetProfileString("general", "editor", "true --read-only");
    manager.SetProfileString("Recent", "board1", "/boards/main board.brd");
    std::printf(" settings in %s:\n", settings.c_str());
    std::printf("  demo/runs was %d, now %d\n", runs, manager.GetProfileIntA("DEMO", "Runs", 0));
    std::printf("  recent/board1 = %s\n",
                static_cast<char const *>(manager.ReadProfileString("recent", "BOARD1", "(none)")));
    std::printf(" showing \"my board.brd\" in the editor (%s): %s\n",
                static_cast<char const *>(manager.ReadProfileString("general", "editor", "")),
                manager.ShowFile("my board.brd") ? "started" : "not started");
    std::printf(" the manager is consistent: %s\n", manager.IsValid() ? "yes" : "no");
  }
  removeTree(root);
}
