//===- sys/sys_geomnode.cpp - Typed roots linked in a ring --------------===//
#include "sys_geomnode.h"

/// Visits the nodes from a first one along the links, up to (not including) the node whose
/// ring is searched. It also ends on a loop that does not lead there: the walk keeps a mark
/// that it moves forward after 1, 2, 4, ... steps (Brent), and coming back to the mark means
/// it is going round. So any linking, however broken, ends after a bounded number of steps.
class SYS_GeomNode::Walk {
public:
  Walk(SYS_GeomNode const *ring, SYS_GeomNode *first)
      : m_Ring(ring), m_Node(first != ring ? first : nullptr), m_Mark(first), m_Arrived(first == ring) {}

  /// The node visited; null when the walk has ended.
  SYS_GeomNode *node() const { return m_Node; }
  /// Whether the walk ended by coming back to the ring's node.
  bool arrived() const { return m_Arrived; }

  void next() {
    SYS_GeomNode *const following = m_Node->m_pNext;
    m_Arrived = following == m_Ring;
    if (m_Arrived || following == m_Mark) {
      m_Node = nullptr;
      return;
    }
    m_Node = following;
    if (++m_Steps == m_Span) {
      m_Mark = m_Node;
      m_Steps = 0;
      m_Span *= 2;
    }
  }

private:
  SYS_GeomNode const *const m_Ring;
  SYS_GeomNode *m_Node;
  SYS_GeomNode const *m_Mark;
  bool m_Arrived;
  unsigned long m_Steps = 0;
  unsigned long m_Span = 1;
};

SYS_GeomNode *SYS_GeomNode::findFrom(SYS_GeomNode const *first, SGN_Type type) const {
  for (Walk walk(this, const_cast<SYS_GeomNode *>(first)); walk.node() != nullptr; walk.next())
    if (walk.node()->m_Type == type) return walk.node();
  return nullptr;
}

SYS_GeomNode *SYS_GeomNode::GetNextRoot(SYS_GeomNode const *node) const {
  if (node == nullptr || node->m_pNext == this) return nullptr;
  return node->m_pNext;
}

SYS_GeomNode *SYS_GeomNode::GetNextRoot(SYS_GeomNode const *node, SGN_Type type) const {
  return node != nullptr ? findFrom(node->m_pNext, type) : nullptr;
}

SYS_GeomNode *SYS_GeomNode::GetNextGeomRoot() const {
  for (Walk walk(this, m_pNext); walk.node() != nullptr; walk.next())
    if (isGeomType(walk.node()->m_Type)) return walk.node();
  return nullptr;
}

SYS_GeomNode *SYS_GeomNode::GetDBRoot() const { return findFrom(m_pNext, SGN_DBRoot); }

SYS_GeomNode *SYS_GeomNode::GetBRTRoot() const { return findFrom(m_pNext, SGN_BRTRoot); }

SYS_GeomNode *SYS_GeomNode::GetPrevRoot(SYS_GeomNode const *node) const {
  if (node == nullptr) return nullptr;
  SYS_GeomNode *last = nullptr;
  Walk walk(this, node->m_pNext);
  for (; walk.node() != nullptr; walk.next()) {
    if (walk.node()->m_Type == SGN_GeomBarrier) return nullptr;
    last = walk.node();
  }
  return walk.arrived() ? last : nullptr;
}

void SYS_GeomNode::IncludeRoot(SYS_GeomNode *node) {
  if (node == nullptr || node == this) return;
  node->m_pNext = m_pNext;
  m_pNext = node;
}

void SYS_GeomNode::ExcludeRoot(SYS_GeomNode *node) {
  if (node == nullptr) return;
  SYS_GeomNode *before = nullptr;
  Walk walk(node, node->m_pNext);
  for (; walk.node() != nullptr; walk.next()) {
    if (walk.node()->m_Type == SGN_GeomBarrier) return;
    before = walk.node();
  }
  if (!walk.arrived() || before == nullptr) return;
  before->m_pNext = node->m_pNext;
  node->m_pNext = node;
}
