//===- inc/scc_event.h - Events, nodes and prioritised hooks ------------===//
//
// An event keeps a ring of connected nodes and delivers a code and a pointer
// parameter to each in turn. Delivery is re-entrant on the calling thread:
// handlers may connect, disconnect, disable, raise the same event again, throw,
// or even destroy the event. A delivery record on the stack makes this work;
// delivery allocates nothing.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_EVENT_H
#define BFC_SCC_EVENT_H

#include "sys_base.h"

template <class T> class SCC_Event;

/// A member of an event's ring: something that can be told of the event's codes.
///
/// An unconnected node has no event and points at itself both ways. A node
/// disconnects itself when destroyed. Copying a node gives an unconnected node;
/// assigning one connects the target just in front of the source.
template <class T>
class SCC_EventNode {
public:
  SCC_EventNode() noexcept : m_Event(nullptr), m_Prev(this), m_Next(this) {}
  /// The copy is unconnected: connections are never duplicated.
  SCC_EventNode(SCC_EventNode const &) noexcept : SCC_EventNode() {}
  /// Leaves the present event and takes the source's place just in front of it
  /// (unconnected when the source is).
  SCC_EventNode &operator=(SCC_EventNode &source) {
    if (&source != this) {
      Disconnect();
      if (source.m_Event != nullptr) linkBefore(&source, source.m_Event);
    }
    return *this;
  }
  virtual ~SCC_EventNode() { Disconnect(); }

  /// Told of one delivery; the result is not used by the event. Does nothing here.
  virtual int OnNotification(int /*code*/, T * /*param*/) { return 0; }
  /// Told, before `node` leaves this object's ring. Only an event reacts.
  virtual void OnDisconnect(SCC_EventNode * /*node*/) {}
  /// The order key of priority connection; a plain node ranks above every hook.
  virtual int GetPriority() { return 0x7FFFFFFF; }
  /// For a node, the event it is connected to; for an event, the record of the
  /// innermost delivery now running on it (a node of no ring, different in each nested
  /// delivery). Null when unconnected or idle. A node, not an event, because it names
  /// either: compare it with an event's address, or keep it to tell deliveries apart.
  virtual SCC_EventNode *GetConnectedEvent() { return m_Event; }

  /// Leaves the event, if any: the event repairs its running deliveries first.
  void Disconnect() {
    if (m_Event == nullptr) return;
    m_Event->OnDisconnect(this);
    m_Event = nullptr;
    m_Prev->m_Next = m_Next;
    m_Next->m_Prev = m_Prev;
    m_Prev = m_Next = this;
  }
  int IsConnected() const noexcept { return m_Event != nullptr; }

protected:
  // For a node: the event it is connected to. For an event: its innermost running
  // delivery record. Both are null when idle.
  SCC_EventNode *m_Event;
  SCC_EventNode *m_Prev;
  SCC_EventNode *m_Next;

private:
  friend class SCC_Event<T>;

  /// Links this (unconnected) node just in front of `next` in the ring of `event`.
  void linkBefore(SCC_EventNode *next, SCC_EventNode *event) noexcept {
    m_Prev = next->m_Prev;
    m_Next = next;
    m_Prev->m_Next = this;
    next->m_Prev = this;
    m_Event = event;
  }
};

/// A node that carries a priority and forwards deliveries to a plain function.
///
/// A copy starts unconnected, with priority 0 and no handler. Assignment places
/// the target in front of the source and takes its priority; what the target
/// calls stays its own. Changing the priority of a connected hook does not move it.
template <class T>
class SCC_EventHook : public SCC_EventNode<T> {
public:
  typedef int (*Handler)(int code, T *param);

  explicit SCC_EventHook(Handler handler = nullptr, int priority = 0) noexcept
      : m_Priority(priority), m_Handler(handler) {}
  SCC_EventHook(SCC_EventHook const &) noexcept : SCC_EventNode<T>(), m_Priority(0), m_Handler(nullptr) {}
  SCC_EventHook &operator=(SCC_EventHook &source) {
    SCC_EventNode<T>::operator=(source);
    m_Priority = source.m_Priority;
    return *this;
  }

  /// The handler's result; 0 when there is no handler.
  int OnNotification(int code, T *param) override {
    return m_Handler != nullptr ? m_Handler(code, param) : 0;
  }
  int GetPriority() override { return m_Priority; }

  void SetPriority(int priority) noexcept { m_Priority = priority; }
  Handler GetHandler() const noexcept { return m_Handler; }
  void SetHandler(Handler handler) noexcept { m_Handler = handler; }

protected:
  int m_Priority;
  Handler m_Handler;

  friend class SCC_Event<T>;
};

/// A hook that forwards deliveries to a member function of an object.
///
/// The object and method stay the hook's own through assignment (a hook usually
/// lives inside the object it calls); a copy starts with neither.
template <class C, class T>
class SCC_ObjectEventHook : public SCC_EventHook<T> {
public:
  typedef int (C::*Method)(int code, T *param);

  explicit SCC_ObjectEventHook(C *object = nullptr, Method method = nullptr, int priority = 0) noexcept
      : SCC_EventHook<T>(nullptr, priority), m_Object(object), m_Method(method) {}
  SCC_ObjectEventHook(SCC_ObjectEventHook const &source) noexcept
      : SCC_EventHook<T>(source), m_Object(nullptr), m_Method(nullptr) {}
  SCC_ObjectEventHook &operator=(SCC_ObjectEventHook &source) {
    SCC_EventHook<T>::operator=(source);
    return *this;
  }

  /// The method's result; 0 when the object or the method is missing.
  int OnNotification(int code, T *param) override {
    return m_Object != nullptr && m_Method != nullptr ? (m_Object->*m_Method)(code, param) : 0;
  }

  void SetObject(C *object, Method method) noexcept {
    m_Object = object;
    m_Method = method;
  }
  C *GetObject() const noexcept { return m_Object; }

protected:
  C *m_Object;
  Method m_Method;
};

/// The source of one kind of notification: the head of a ring of nodes.
///
/// Hooks of higher priority are told first; among equal priorities the one
/// connected last is told first. Copying or assigning an event moves its
/// connections to the target and leaves the source with none; only the copy
/// constructor takes the source's enabled flag, assignment keeps the target's.
template <class T>
class SCC_Event : public SCC_EventNode<T> {
  typedef SCC_EventNode<T> Node;

public:
  class Saver;

  SCC_Event() noexcept : m_Enabled(1) {}
  SCC_Event(SCC_Event &source) noexcept : SCC_EventNode<T>(), m_Enabled(source.m_Enabled) { takeRing(source); }
  SCC_Event &operator=(SCC_Event &source) {
    if (&source != this) {
      DisconnectAll();
      takeRing(source);
    }
    return *this;
  }
  /// Disconnects every node, first to last; a delivery still running on the
  /// event stops as soon as its handler returns.
  ~SCC_Event() override;

  /// Connects `node` last, after leaving its present event.
  void Append(Node &node) {
    node.Disconnect();
    node.linkBefore(this, this);
  }
  /// Connects `hook` in front of the first node whose priority is not above the
  /// hook's, or last; after leaving its present event. Walks the ring once.
  void Insert(SCC_EventHook<T> &hook) {
    hook.Disconnect();
    int const priority = hook.m_Priority;
    Node *next = this->m_Next;
    while (next != this && next->GetPriority() > priority) next = next->m_Next;
    hook.linkBefore(next, this);
  }
  /// An event is never a member of another event's ring.
  void Append(SCC_Event &) = delete;
  /// An event leaves nothing; see DisconnectAll.
  void Disconnect() = delete;
  /// Disconnects every node, first to last, each as by its own Disconnect.
  void DisconnectAll() {
    while (this->m_Next != this) this->m_Next->Disconnect();
  }

  /// Tells every connected node, first to last, `code` and `param`. Returns 0.
  /// Nodes connected during the delivery ahead of the cursor are told too;
  /// disconnected ones before the cursor reaches them are not; disabling the
  /// event ends this delivery and every one it is nested in.
  int Notify(int code, T *param);

  void Enable() noexcept { m_Enabled = 1; }
  void Disable() noexcept { m_Enabled = 0; }
  int IsEnabled() const noexcept { return m_Enabled; }

  /// Keeps the running deliveries valid when `node` is about to leave the ring:
  /// a delivery whose cursor is `node` steps back to its predecessor.
  void OnDisconnect(Node *node) override;

protected:
  int m_Enabled;

private:
  /// Takes over the source's ring. This ring is empty. A delivery still running on
  /// the source ends at its next step, as the source has no nodes left.
  void takeRing(SCC_Event &source) noexcept;
};

/// The record of one running delivery, made on the stack by Notify.
///
/// Its node fields hold the cursor (m_Event), itself (m_Prev) and the record of
/// the delivery it is nested in (m_Next). Destroying it (also by an exception)
/// puts the event's record back to the outer one.
template <class T>
class SCC_Event<T>::Saver : public SCC_EventNode<T> {
public:
  // The event holds the record's address only while the record lives: the destructor
  // takes it back, also on unwinding. GCC cannot see that and warns.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer"
#endif
  explicit Saver(SCC_Event &event) noexcept : m_pEventField(&event.m_Event) {
    this->m_Event = event.m_Next;
    this->m_Prev = this;
    this->m_Next = event.m_Event;
    event.m_Event = this;
  }
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
#pragma GCC diagnostic pop
#endif
  Saver(Saver const &) = delete;
  Saver &operator=(Saver const &) = delete;
  ~Saver() override {
    if (m_pEventField != nullptr) *m_pEventField = this->m_Next;
    this->m_Event = nullptr;  // the cursor is no connection to undo
    this->m_Prev = this->m_Next = this;
  }

private:
  friend class SCC_Event<T>;
  // The event's record field; null once the event is destroyed.
  SCC_EventNode<T> **m_pEventField;
};

template <class T>
SCC_Event<T>::~SCC_Event() {
  DisconnectAll();
  for (Node *record = this->m_Event; record != nullptr; record = record->m_Next)
    static_cast<Saver *>(record)->m_pEventField = nullptr;
  this->m_Event = nullptr;
}

template <class T>
inline int SCC_Event<T>::Notify(int code, T *param) {
  Saver record(*this);
  if (m_Enabled == 0) return 0;
  while (record.m_Event != this) {
    record.m_Event->OnNotification(code, param);
    if (record.m_pEventField == nullptr) return 0;  // a handler destroyed the event
    record.m_Event = record.m_Event->m_Next;
    if (m_Enabled == 0) break;
  }
  return 0;
}

template <class T>
void SCC_Event<T>::OnDisconnect(Node *node) {
  for (Node *record = this->m_Event; record != nullptr; record = record->m_Next)
    if (record->m_Event == node) record->m_Event = node->m_Prev;
}

template <class T>
void SCC_Event<T>::takeRing(SCC_Event &source) noexcept {
  if (source.m_Next != &source) {
    this->m_Next = source.m_Next;
    this->m_Prev = source.m_Prev;
    this->m_Next->m_Prev = this;
    this->m_Prev->m_Next = this;
    source.m_Next = source.m_Prev = &source;
    for (Node *node = this->m_Next; node != this; node = node->m_Next) node->m_Event = this;
  }
  for (Node *record = source.m_Event; record != nullptr; record = record->m_Next) record->m_Event = &source;
}

/// The event of the containers and services: an integer code and a pointer
/// parameter whose meaning the raising class fixes. A handle travels as the
/// pointer's value, so every bit of a SYS_Handle arrives.
class SCC_Notifier : public SCC_Event<SYS_Handle> {
public:
  /// The handle a notification carries, from its parameter.
  static SYS_Handle HandleOf(SYS_Handle *param) noexcept { return reinterpret_cast<SYS_Handle>(param); }
  /// The parameter that carries `handle`.
  static SYS_Handle *ParamOf(SYS_Handle handle) noexcept { return reinterpret_cast<SYS_Handle *>(handle); }

  SCC_Notifier() noexcept = default;
  SCC_Notifier(SCC_Notifier &source) noexcept : SCC_Event<SYS_Handle>(source) {}
  SCC_Notifier &operator=(SCC_Notifier &source) {
    SCC_Event<SYS_Handle>::operator=(source);
    return *this;
  }
};

/// The notifier policy of the list templates that reports nothing.
class SCC_NullNotifier {
public:
  /// The base of the list iterators; it has no data.
  class Node {};
};

#endif
