//===- inc/scc_list.h - Linked lists and the reference list -------------===//
//
// SCC_SList and SCC_DList link nodes that derive from SCC_SListNode or
// SCC_DListNode; with the flag 1 they own their nodes. SCC_RefDList links
// SCC_DListRefNodes that know which list they are in, so that a node can leave
// its list by itself (when it is destroyed, for instance).
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_LIST_H
#define BFC_SCC_LIST_H

#include "scc_event.h"
#include "sys_base.h"

/// The link of a singly linked node; `T` is the node class itself.
template <class T>
struct SCC_SListNode {
  T *m_Next = nullptr;
};

/// The links of a doubly linked node; `T` is the node class itself.
template <class T>
struct SCC_DListNode : SCC_SListNode<T> {
  T *m_Prev = nullptr;
};

/// A null-terminated singly linked list of `T`; owns its nodes when `flag` is 1.
///
/// Removing a node hands it (and, in an owning list, its ownership) to the caller.
/// Lists are not copied: a node is in one list at a time.
template <class T, int flag = 0, class N = SCC_NullNotifier>
class SCC_SList : public N {
public:
  SCC_SList() noexcept : m_Head(nullptr) {}
  SCC_SList(SCC_SList const &) = delete;
  SCC_SList &operator=(SCC_SList const &) = delete;
  ~SCC_SList() { RemoveAll(); }

  T *GetHead() const noexcept { return m_Head; }
  int IsEmpty() const noexcept { return m_Head == nullptr; }
  int GetCount() const noexcept {
    int count = 0;
    for (T *node = m_Head; node != nullptr; node = node->m_Next) ++count;
    return count;
  }

  /// Links `node` first; returns it.
  T *AddHead(T *node) noexcept {
    node->m_Next = m_Head;
    m_Head = node;
    return node;
  }
  /// Links `node` after `pos` (first when `pos` is null); returns it.
  T *InsertAfter(T *pos, T *node) noexcept {
    if (pos == nullptr) return AddHead(node);
    node->m_Next = pos->m_Next;
    pos->m_Next = node;
    return node;
  }
  /// Unlinks the first node; null when the list is empty.
  T *RemoveHead() noexcept {
    T *const node = m_Head;
    if (node != nullptr) {
      m_Head = node->m_Next;
      node->m_Next = nullptr;
    }
    return node;
  }
  /// Unlinks `node` (a walk from the head); null when it is not in the list.
  T *Remove(T *node) noexcept {
    for (T **link = &m_Head; *link != nullptr; link = &(*link)->m_Next) {
      if (*link == node) {
        *link = node->m_Next;
        node->m_Next = nullptr;
        return node;
      }
    }
    return nullptr;
  }
  /// Empties the list; an owning list deletes its nodes, first to last.
  void RemoveAll() {
    while (T *node = RemoveHead()) {
      if constexpr (flag == 1) delete node;
    }
  }

  /// Walks a list from its head. The list must not lose the current node.
  class Iterator : public SCC_NullNotifier::Node {
  public:
    Iterator() noexcept : m_Node(nullptr) {}
    explicit Iterator(SCC_SList const &list) noexcept : m_Node(list.m_Head) {}
    virtual ~Iterator() = default;
    Iterator(Iterator const &) = default;
    Iterator &operator=(Iterator const &) = default;

    /// Puts `node` in place as the current node; returns the previous one.
    virtual T *SetCurrent(T *node) {
      T *const previous = m_Node;
      m_Node = node;
      return previous;
    }
    T *GetNode() const noexcept { return m_Node; }
    int IsValid() const noexcept { return m_Node != nullptr; }
    void Next() {
      if (m_Node != nullptr) SetCurrent(m_Node->m_Next);
    }

  protected:
    T *m_Node;
  };

protected:
  T *m_Head;
};

/// A null-terminated doubly linked list of `T`; owns its nodes when `flag` is 1.
///
/// The operations of SCC_SList are replaced by ones that keep m_Tail; do not call
/// the singly linked ones through a base reference.
template <class T, int flag = 0, class N = SCC_NullNotifier>
class SCC_DList : public SCC_SList<T, flag, N> {
  typedef SCC_SList<T, flag, N> Base;

public:
  SCC_DList() noexcept : m_Tail(nullptr) {}
  ~SCC_DList() { RemoveAll(); }

  T *GetTail() const noexcept { return m_Tail; }

  T *AddHead(T *node) noexcept { return InsertAfter(nullptr, node); }
  T *AddTail(T *node) noexcept { return InsertBefore(nullptr, node); }
  /// Links `node` before `pos` (last when `pos` is null); returns it.
  T *InsertBefore(T *pos, T *node) noexcept {
    T *const prev = pos != nullptr ? pos->m_Prev : m_Tail;
    node->m_Prev = prev;
    node->m_Next = pos;
    (prev != nullptr ? prev->m_Next : this->m_Head) = node;
    (pos != nullptr ? pos->m_Prev : m_Tail) = node;
    return node;
  }
  /// Links `node` after `pos` (first when `pos` is null); returns it.
  T *InsertAfter(T *pos, T *node) noexcept {
    return InsertBefore(pos != nullptr ? pos->m_Next : this->m_Head, node);
  }
  /// Unlinks `node`, which is in this list; returns it with cleared links.
  T *Remove(T *node) noexcept {
    (node->m_Prev != nullptr ? node->m_Prev->m_Next : this->m_Head) = node->m_Next;
    (node->m_Next != nullptr ? node->m_Next->m_Prev : m_Tail) = node->m_Prev;
    node->m_Next = node->m_Prev = nullptr;
    return node;
  }
  T *RemoveHead() noexcept { return this->m_Head != nullptr ? Remove(this->m_Head) : nullptr; }
  T *RemoveTail() noexcept { return m_Tail != nullptr ? Remove(m_Tail) : nullptr; }
  void RemoveAll() {
    while (T *node = RemoveHead()) {
      if constexpr (flag == 1) delete node;
    }
  }

protected:
  T *m_Tail;
};

class SCC_RefDList;

/// A member of an SCC_RefDList that knows its list and leaves it when destroyed.
class BFC_API SCC_DListRefNode : public SCC_DListNode<SCC_DListRefNode> {
public:
  /// Unlinked, in no list.
  SCC_DListRefNode() noexcept : m_List(nullptr) {}
  /// Added at the head of `list` when it is not null.
  explicit SCC_DListRefNode(SCC_RefDList *list);
  /// Inserted just before `other` when `other` is in a list; else in no list.
  SCC_DListRefNode(SCC_DListRefNode &other);
  /// Leaves its own list; then, when `other` is in a list, joins it just before `other`.
  SCC_DListRefNode &operator=(SCC_DListRefNode &other);
  virtual ~SCC_DListRefNode();

  /// Told by SCC_RefDList::NotifyNodes; returns `code` here.
  virtual int OnNotification(int code, void *param);

  /// Unlinks itself from its present list (fixing that list's head and tail) and
  /// records `list` as its list without linking into it.
  void ChangeList(SCC_RefDList *list) noexcept;
  SCC_RefDList *GetList() const noexcept { return m_List; }

private:
  friend class SCC_RefDList;
  // Invariant: linked into m_List's chain exactly when m_List is not null.
  SCC_RefDList *m_List;
};

/// A list of SCC_DListRefNodes that does not own them; every node in it names it.
///
/// Each linking operation first takes the node out of the list it was in. A null
/// node, or a position that is not in this list, is reported and nothing is linked.
class BFC_API SCC_RefDList : public SCC_DList<SCC_DListRefNode, 0, SCC_NullNotifier> {
public:
  SCC_RefDList() noexcept = default;
  /// Takes over the other list's chain, leaving it empty.
  SCC_RefDList(SCC_RefDList &other) noexcept;
  /// Unlinks this list's nodes (they are in no list afterwards) and takes over the
  /// other list's chain, leaving it empty. Nothing happens when the heads are equal.
  SCC_RefDList &operator=(SCC_RefDList &other) noexcept;
  ~SCC_RefDList();

  SCC_DListRefNode *AddHead(SCC_DListRefNode *node);
  SCC_DListRefNode *AddTail(SCC_DListRefNode *node);
  /// Links `node` before or after `pos`, which must be in this list and differ from `node`.
  SCC_DListRefNode *InsertBefore(SCC_DListRefNode *pos, SCC_DListRefNode *node);
  SCC_DListRefNode *InsertAfter(SCC_DListRefNode *pos, SCC_DListRefNode *node);
  SCC_RefDList &operator+=(SCC_DListRefNode &node) {
    AddTail(&node);
    return *this;
  }
  /// Takes `node` out of whatever list it is in.
  SCC_DListRefNode *Remove(SCC_DListRefNode *node);
  /// The head or tail taken out; null when the list is empty.
  SCC_DListRefNode *RemoveHead() { return m_Head != nullptr ? Remove(m_Head) : nullptr; }
  SCC_DListRefNode *RemoveTail() { return m_Tail != nullptr ? Remove(m_Tail) : nullptr; }
  void RemoveAll() noexcept;
  /// Moves every node of `other`, head first, to the tail of this list.
  void Merge(SCC_RefDList &other);

  /// 1 when every node names this list (an empty list is valid).
  int IsValid() const noexcept;
  /// Tells each node `code` and `param`, from the head; returns the last result, 0
  /// for an empty list. A node's successor is read after its call, so nodes linked
  /// behind it meanwhile are told too. When a node leaves the list during its own
  /// call, the walk goes on after the node told before it (or from the head).
  int NotifyNodes(int code, void *param);
};

#endif
