//===- inc/sys_stdinterface.h - Handle cursor over a numbered set -------===//
//
// The host exposes its item sets to generic code through cursors derived from
// SYS_StdInterface and overrides what its set needs; the library gives only
// the default walk over the handles 1 to the maximum.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_STDINTERFACE_H
#define BFC_SYS_STDINTERFACE_H

#include "sys_base.h"

class SCC_Notifier;

/// A cursor over the handles 1 to a maximum; handle 0 means no current element. The
/// virtual operations keep the order below (the host's overrides rely on it). Not deleted
/// through a pointer to this class: it has no virtual destructor, so that the slots stay as
/// they are.
class BFC_API SYS_StdInterface {
public:
  /// The handle is 0 until GetFirst or SetHandle.
  explicit SYS_StdInterface(SYS_Handle maxHandle = 0) : m_Handle(0), m_MaxHandle(maxHandle) {}
  SYS_StdInterface(SYS_StdInterface const &other) = default;
  SYS_StdInterface &operator=(SYS_StdInterface const &other) = default;

  /// The event that announces changes of the set; null: the set never changes.
  virtual SCC_Notifier *GetChangeEvent(void *context);
  virtual void SetMaxHandle(SYS_Handle maxHandle);
  /// 1 when there is a current element (the handle is not 0).
  virtual int IsValid() const;
  /// Makes `handle` current; `context` is for the host's overrides.
  virtual void SetHandle(SYS_Handle handle, void *context);
  virtual SYS_Handle GetHandle() const;
  /// Handle 1 when the maximum is positive, otherwise 0; `context` is for the host's overrides.
  virtual void GetFirst(void *context);
  /// The next handle, or 0 when that would exceed the maximum.
  virtual void GetNext();
  /// Called when the host's item pointers have moved; nothing to do here.
  virtual void OnUpdatePointers();

  /// Ascending order of handles for the sort routines: negative when a comes first, 0 when
  /// equal. The difference a - b, saturated to the range of `int` (the same in both models).
  static int DefaultSort(SYS_Handle const &a, SYS_Handle const &b);

private:
  SYS_Handle m_Handle;
  SYS_Handle m_MaxHandle;
};

#endif
