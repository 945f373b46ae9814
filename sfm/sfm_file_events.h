//===- sfm/sfm_file_events.h - How file objects report -------------------===//
#ifndef BFC_SFM_FILE_EVENTS_H
#define BFC_SFM_FILE_EVENTS_H

#include "sfm.h"
#include "ssm_report.h"

namespace sfm_file {

/// The file's own check: reported with the source "sfm/sfmfile".
inline bool check(bool ok, int line) { return SSM_Check(ok, "", "sfm/sfmfile", line); }

/// Raises `code` for the file `name` through the manager; EventNone without one.
SFM::EventCode raise(SFM::EventCode code, SYS_String const &name);

}  // namespace sfm_file

#endif
