//===- sfm/sfmfile_map.cpp - A file's bytes as a private view ------------===//
//
// The view shows the file as it is on disk, so an open file is closed for a
// while first: that writes its buffer out and keeps its position. A mapping
// that fails, or shows an empty file, leaves the file as it found it.
//
//===------------------------------------------------------------------===//
#include "sfm_file.h"

#include "sfm/sfm_file_events.h"
#include "sfm/sfm_mapping.h"

void *SFM_File::MapToMemory() {
  if (m_Mapping && UnmapMemory() == 0) return nullptr;
  bool const closedHere = MayBeTempClosed() != 0;
  if (closedHere && TempClose() == 0) return nullptr;  // its buffer could not be written out
  std::unique_ptr<SFM_Mapping> mapping(new SFM_Mapping);
  bool mapped = plat::mapFile(m_Name, mapping->view);
  while (!mapped && sfm_file::raise(SFM::EventOpenFailed, m_Name) == SFM::EventRetry)
    mapped = plat::mapFile(m_Name, mapping->view);
  if (!mapped || mapping->view.address == nullptr) {
    if (closedHere && m_TempClosed != 0) ReOpen();
    return nullptr;
  }
  m_Mapping = std::move(mapping);
  return m_Mapping->view.address;
}

int SFM_File::UnmapMemory() {
  if (!m_Mapping) return 1;
  if (!plat::unmapFile(m_Mapping->view)) return 0;
  m_Mapping.reset();
  if (m_TempClosed != 0) ReOpen();
  return 1;
}
