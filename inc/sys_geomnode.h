//===- inc/sys_geomnode.h - Typed roots linked in a ring ----------------===//
//
// The host keeps the roots of its geometry (the database root, the BRT root,
// the geometry roots) as nodes of one intrusive ring and finds them by type.
//
//===------------------------------------------------------------------===//
#ifndef BFC_SYS_GEOMNODE_H
#define BFC_SYS_GEOMNODE_H

#include "sys_base.h"

/// The type of a ring node: 0 is not valid, 1, 2 and 6 are geometry types, 4 marks the
/// database root and 7 the BRT root; the host gives the other values their meaning. A
/// walk that looks for a node's predecessor does not pass a node of type 6.
enum SGN_Type : short {
  SGN_NotValid = 0,
  SGN_DBRoot = 4,
  SGN_GeomBarrier = 6,
  SGN_BRTRoot = 7,
};

/// A node of an intrusive ring of typed roots; the base of the host's root classes.
///
/// Every search walks the ring from the node after this one and stops when it comes back to
/// this one. A walk also stops, finding nothing, at a node whose ring does not lead back
/// (a node of another ring, or a copy that took another node's link), so no search loops.
class BFC_API SYS_GeomNode {
public:
  /// Copies the type, the link and the reserved field: the copy points where the source
  /// points but no node points to it until it is included in a ring.
  SYS_GeomNode &operator=(SYS_GeomNode const &other) = default;

  /// 1 when the type is not 0.
  int IsValid() const { return m_Type != SGN_NotValid ? 1 : 0; }
  /// 1 when the type is 1, 2 or 6.
  int IsGeomType() const { return isGeomType(m_Type) ? 1 : 0; }
  SGN_Type GetGeomType() const { return m_Type; }
  void SetGeomType(SGN_Type type) { m_Type = type; }

  /// Links this node to `next` (null makes it a ring of its own).
  void SetRoot(SYS_GeomNode *next) { m_pNext = next != nullptr ? next : this; }
  /// The next node; null when this node is alone.
  SYS_GeomNode *GetRoot() const { return m_pNext != this ? m_pNext : nullptr; }

  /// The node after `node`; null when that is this node (or `node` is null).
  SYS_GeomNode *GetNextRoot(SYS_GeomNode const *node) const;
  /// The first node of type `type` from the node after `node` on; null when there is none.
  SYS_GeomNode *GetNextRoot(SYS_GeomNode const *node, SGN_Type type) const;
  /// The first node with a geometry type (1, 2 or 6); null when there is none.
  SYS_GeomNode *GetNextGeomRoot() const;
  /// The first node of type 4; null when there is none.
  SYS_GeomNode *GetDBRoot() const;
  /// The first node of type 7; null when there is none.
  SYS_GeomNode *GetBRTRoot() const;
  /// Walking from the node after `node`: the last node before this one. Null when the node
  /// after `node` is this one, or when the walk meets a node of type 6.
  SYS_GeomNode *GetPrevRoot(SYS_GeomNode const *node) const;

  /// Inserts `node` right after this one; nothing happens for null or this node itself.
  void IncludeRoot(SYS_GeomNode *node);
  /// Takes `node` out of its ring, which closes behind it, and makes it a ring of its own.
  /// Nothing changes when `node` is null or alone, or when the walk round its ring to the
  /// node before it meets a node of type 6 (that node included).
  void ExcludeRoot(SYS_GeomNode *node);

protected:
  /// A node alone, of the given type.
  explicit SYS_GeomNode(SGN_Type type = SGN_NotValid) : m_pNext(this), m_Type(type), m_Reserved(32767) {}
  SYS_GeomNode(SYS_GeomNode const &other) = default;
  ~SYS_GeomNode() = default;

private:
  class Walk;

  static bool isGeomType(SGN_Type type) { return type == 1 || type == 2 || type == 6; }
  SYS_GeomNode *findFrom(SYS_GeomNode const *first, SGN_Type type) const;

  // Never null: a node alone points to itself.
  SYS_GeomNode *m_pNext;
  SGN_Type m_Type;
  short m_Reserved;  // set to 32767 and otherwise unused
};

static_assert(sizeof(SGN_Type) == 2, "the node type is a 16-bit field");

#endif
