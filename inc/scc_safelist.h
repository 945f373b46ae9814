//===- inc/scc_safelist.h - Lists whose iterators survive removals ------===//
//
// A safe list is a ring closed by a root node embedded in the list. Every node
// keeps a reference list of the iterators standing on it; removing a node first
// moves those iterators on to its successor, so a walk never stands on a node
// that has left the list. The list links its nodes and never owns them.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_SAFELIST_H
#define BFC_SCC_SAFELIST_H

#include "scc_list.h"
#include "ssm_report.h"
#include "sys_base.h"

template <class T, int flag, class N> class SCC_SafeDList;

/// The base of every node of a safe list; `T` is the node class itself.
///
/// An unlinked node points at itself. A node that is destroyed while linked
/// leaves its list as by Remove (its iterators move on). The links are typed as
/// this base so that the list's root, which is not a `T`, can close the ring.
template <class T>
class SCC_SafeDListNode {
public:
  SCC_SafeDListNode() noexcept : m_Next(this), m_Prev(this) {}
  /// A copy is unlinked and has no iterators.
  SCC_SafeDListNode(SCC_SafeDListNode const &) noexcept : SCC_SafeDListNode() {}
  /// Links and iterators stay with the node they belong to.
  SCC_SafeDListNode &operator=(SCC_SafeDListNode const &) noexcept { return *this; }
  virtual ~SCC_SafeDListNode();

  /// Asked to take `node` out of the list; only the root does so.
  virtual void DetachNode(SCC_SafeDListNode * /*node*/) {}
  /// 1 for a node of the list, 0 for the root that closes the ring.
  virtual int IsNode() { return 1; }

  int IsLinked() const noexcept { return m_Next != this; }

private:
  template <class, int, class> friend class SCC_SafeDList;

  SCC_SafeDListNode *m_Next;
  SCC_SafeDListNode *m_Prev;
  // The iterators standing on this node.
  SCC_RefDList m_Iterators;
};

/// A doubly linked ring of `T` nodes whose iterators survive removals.
///
/// Linking tells the node's iterators code 1 afterwards, removing tells them
/// code 2 before (they step to the successor), emptying tells them code 6 (they
/// stand nowhere). Positions given as null mean the root: InsertBefore(null, n)
/// appends, InsertAfter(null, n) prepends. A node that is already linked, or a
/// position that is not, is reported and nothing is linked.
template <class T, int flag = 0, class N = SCC_NullNotifier>
class SCC_SafeDList : public N {
  static_assert(flag == 0, "a safe list links its nodes and never owns them");
  typedef SCC_SafeDListNode<T> Node;

public:
  class Iterator;

  /// The node that closes the ring and knows its list.
  class RootNode : public Node {
  public:
    explicit RootNode(SCC_SafeDList *list) noexcept : m_List(list) {}
    RootNode(RootNode const &) = delete;
    RootNode &operator=(RootNode const &) = delete;

    void DetachNode(Node *node) override { m_List->removeNode(node); }
    int IsNode() override { return 0; }

  private:
    friend class SCC_SafeDList;
    SCC_SafeDList *m_List;
  };

  SCC_SafeDList() noexcept : m_Root(this) {}
  /// Takes over the other list's ring, leaving it empty.
  SCC_SafeDList(SCC_SafeDList &other) noexcept : m_Root(this) { takeRing(other); }
  /// Empties this list, then takes over the other list's ring, leaving it empty.
  SCC_SafeDList &operator=(SCC_SafeDList &other) {
    if (&other != this) {
      RemoveAll();
      takeRing(other);
    }
    return *this;
  }
  /// Unlinks every node as RemoveAll does, code 6 to their iterators included; the
  /// nodes are not deleted.
  virtual ~SCC_SafeDList() { RemoveAll(); }

  virtual int IsEmpty() { return m_Root.m_Next == &m_Root; }
  virtual int GetCount() {
    int count = 0;
    for (Node *node = m_Root.m_Next; node != &m_Root; node = node->m_Next) ++count;
    return count;
  }
  virtual T *InsertBefore(T *pos, T *node) {
    Node *const next = pos != nullptr ? static_cast<Node *>(pos) : &m_Root;
    return canLink(next, node) ? link(next->m_Prev, node) : nullptr;
  }
  virtual T *InsertAfter(T *pos, T *node) {
    Node *const prev = pos != nullptr ? static_cast<Node *>(pos) : &m_Root;
    return canLink(prev, node) ? link(prev, node) : nullptr;
  }
  /// Tells the node's iterators code 2, then unlinks it. Returns it; null when it
  /// was null (reported) or not linked.
  virtual T *Remove(T *node) {
    if (!SSM_Check(node != nullptr, "", "scc/scc", __LINE__)) return nullptr;
    return removeNode(node) ? node : nullptr;
  }
  virtual T *RemoveHead() { return IsEmpty() ? nullptr : Remove(GetHead()); }
  virtual T *RemoveTail() { return IsEmpty() ? nullptr : Remove(GetTail()); }
  /// Unlinks every node, first to last, without the removal code 2. Each node's
  /// iterators are told code 6, with the node as the parameter, once it is unlinked:
  /// they stand nowhere, so none is left on a node outside the list.
  virtual void RemoveAll() {
    while (m_Root.m_Next != &m_Root) {
      Node *const node = m_Root.m_Next;
      unlink(node);
      node->m_Iterators.NotifyNodes(6, node);
    }
  }
  virtual T *GetHead() { return m_Root.m_Next != &m_Root ? static_cast<T *>(m_Root.m_Next) : nullptr; }
  virtual T *GetTail() { return m_Root.m_Prev != &m_Root ? static_cast<T *>(m_Root.m_Prev) : nullptr; }
  virtual T *AddHead(T *node) { return InsertAfter(nullptr, node); }
  virtual T *AddTail(T *node) { return InsertBefore(nullptr, node); }
  /// 0 as soon as a node's iterator list, or the ring's links, are inconsistent.
  virtual int IsValid() {
    for (Node *node = m_Root.m_Next; node != &m_Root; node = node->m_Next)
      if (node->m_Next->m_Prev != node || !node->m_Iterators.IsValid()) return 0;
    return 1;
  }

private:
  friend class Iterator;

  bool canLink(Node *pos, T *node) {
    return SSM_Check(node != nullptr && !static_cast<Node *>(node)->IsLinked() &&
                         (pos == &m_Root || pos->IsLinked()),
                     "", "scc/scc", __LINE__);
  }
  T *link(Node *prev, T *node) {
    Node *const added = node;
    added->m_Prev = prev;
    added->m_Next = prev->m_Next;
    prev->m_Next->m_Prev = added;
    prev->m_Next = added;
    added->m_Iterators.NotifyNodes(1, added);
    return node;
  }
  static void unlink(Node *node) noexcept {
    node->m_Prev->m_Next = node->m_Next;
    node->m_Next->m_Prev = node->m_Prev;
    node->m_Next = node->m_Prev = node;
  }
  /// The removal behind Remove, on the base so that a node being destroyed (no
  /// longer a `T`) can use it. false when the node was not linked.
  bool removeNode(Node *node) {
    if (!node->IsLinked()) return false;
    node->m_Iterators.NotifyNodes(2, node);
    if (node->IsLinked()) unlink(node);
    return true;
  }
  void takeRing(SCC_SafeDList &other) noexcept {
    if (other.m_Root.m_Next == &other.m_Root) return;
    m_Root.m_Next = other.m_Root.m_Next;
    m_Root.m_Prev = other.m_Root.m_Prev;
    m_Root.m_Next->m_Prev = &m_Root;
    m_Root.m_Prev->m_Next = &m_Root;
    other.m_Root.m_Next = other.m_Root.m_Prev = &other.m_Root;
  }

  RootNode m_Root;
};

/// A position in a safe list that stays valid when nodes are removed: when its
/// node leaves, it moves on to the successor (or, past the last node, nowhere).
///
/// While it stands on a node it is a member of that node's iterator list. A copy
/// stands on the same node.
template <class T, int flag, class N>
class SCC_SafeDList<T, flag, N>::Iterator : public SCC_DListRefNode {
public:
  Iterator() noexcept : m_Node(nullptr) {}
  /// Stands on the first node of `list`.
  explicit Iterator(SCC_SafeDList &list) : m_Node(nullptr) { First(list); }
  Iterator(Iterator &other) : SCC_DListRefNode(other), m_Node(other.m_Node) {}
  Iterator &operator=(Iterator &other) {
    SCC_DListRefNode::operator=(other);
    m_Node = other.m_Node;
    return *this;
  }

  /// The node it stands on, or null.
  T *Get() const noexcept { return m_Node != nullptr ? static_cast<T *>(m_Node) : nullptr; }
  T *operator->() const noexcept { return Get(); }
  int IsValid() const noexcept { return m_Node != nullptr; }

  void First(SCC_SafeDList &list) { standOn(list.m_Root.m_Next); }
  void Last(SCC_SafeDList &list) { standOn(list.m_Root.m_Prev); }
  /// Steps to the successor; past the last node it stands nowhere.
  void Next() {
    if (m_Node != nullptr) standOn(m_Node->m_Next);
  }
  /// Steps to the predecessor; before the first node it stands nowhere.
  void Prev() {
    if (m_Node != nullptr) standOn(m_Node->m_Prev);
  }
  /// Stands on `node`, which must be linked (an unlinked one is reported), or
  /// nowhere for null.
  void Set(T *node) {
    Node *const target = node;
    if (target != nullptr && !SSM_Check(target->IsLinked(), "", "scc/scc", __LINE__)) return;
    standOn(target);
  }

  /// Code 2 for its node: step to the successor. Code 6: stand nowhere.
  int OnNotification(int code, void *param) override {
    if (code == 2 && m_Node != nullptr && param == static_cast<void *>(m_Node)) {
      Next();
    } else if (code == 6) {
      standOn(nullptr);
    }
    return 0;
  }

private:
  void standOn(Node *node) {
    if (node != nullptr && node->IsNode()) {
      m_Node = node;
      node->m_Iterators.AddHead(this);
    } else {
      m_Node = nullptr;
      ChangeList(nullptr);
    }
  }

  Node *m_Node;
};

template <class T>
SCC_SafeDListNode<T>::~SCC_SafeDListNode() {
  if (IsLinked()) {
    SCC_SafeDListNode *root = m_Prev;
    while (root->IsNode()) root = root->m_Prev;
    root->DetachNode(this);
  }
  m_Iterators.NotifyNodes(6, this);
}

#endif
