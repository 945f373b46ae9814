//===- scc/scc_reflist.cpp - Reference list and its self-aware nodes ----===//
//
// Every change of membership goes through SCC_DListRefNode::ChangeList, which
// takes the node out of the chain it is in; the list operations then link it.
//
//===------------------------------------------------------------------===//
#include "scc_list.h"

#include "ssm_report.h"

namespace {

typedef SCC_DList<SCC_DListRefNode, 0, SCC_NullNotifier> Chain;

bool checked(bool ok, int line) { return SSM_Check(ok, "", "scc/scc", line); }

}  // namespace

SCC_DListRefNode::SCC_DListRefNode(SCC_RefDList *list) : m_List(nullptr) {
  if (list != nullptr) list->AddHead(this);
}

SCC_DListRefNode::SCC_DListRefNode(SCC_DListRefNode &other) : SCC_DListNode(), m_List(nullptr) {
  if (other.m_List != nullptr) other.m_List->InsertBefore(&other, this);
}

SCC_DListRefNode &SCC_DListRefNode::operator=(SCC_DListRefNode &other) {
  if (&other != this) {
    ChangeList(nullptr);
    if (other.m_List != nullptr) other.m_List->InsertBefore(&other, this);
  }
  return *this;
}

SCC_DListRefNode::~SCC_DListRefNode() { ChangeList(nullptr); }

int SCC_DListRefNode::OnNotification(int code, void *) { return code; }

void SCC_DListRefNode::ChangeList(SCC_RefDList *list) noexcept {
  // A node given a list by an earlier ChangeList but never linked must not unlink
  // anything: it is linked only when it has a neighbour or heads the list.
  if (m_List != nullptr && (m_Prev != nullptr || m_Next != nullptr || m_List->GetHead() == this))
    static_cast<Chain *>(m_List)->Remove(this);
  m_Next = m_Prev = nullptr;
  m_List = list;
}

SCC_RefDList::SCC_RefDList(SCC_RefDList &other) noexcept : SCC_RefDList() { *this = other; }

SCC_RefDList &SCC_RefDList::operator=(SCC_RefDList &other) noexcept {
  if (m_Head == other.m_Head) return *this;
  while (SCC_DListRefNode *node = m_Head) {
    m_Head = node->m_Next;
    node->m_Next = node->m_Prev = nullptr;
    node->m_List = nullptr;
  }
  m_Head = other.m_Head;
  m_Tail = other.m_Tail;
  other.m_Head = other.m_Tail = nullptr;
  for (SCC_DListRefNode *node = m_Head; node != nullptr; node = node->m_Next) node->m_List = this;
  return *this;
}

SCC_RefDList::~SCC_RefDList() {
  RemoveAll();
  m_Head = m_Tail = nullptr;
}

SCC_DListRefNode *SCC_RefDList::AddHead(SCC_DListRefNode *node) {
  if (!checked(node != nullptr, __LINE__)) return nullptr;
  node->ChangeList(this);
  return Chain::AddHead(node);
}

SCC_DListRefNode *SCC_RefDList::AddTail(SCC_DListRefNode *node) {
  if (!checked(node != nullptr, __LINE__)) return nullptr;
  node->ChangeList(this);
  return Chain::AddTail(node);
}

SCC_DListRefNode *SCC_RefDList::InsertBefore(SCC_DListRefNode *pos, SCC_DListRefNode *node) {
  if (!checked(node != nullptr && pos != nullptr && pos->m_List == this && pos != node, __LINE__))
    return nullptr;
  node->ChangeList(this);
  return Chain::InsertBefore(pos, node);
}

SCC_DListRefNode *SCC_RefDList::InsertAfter(SCC_DListRefNode *pos, SCC_DListRefNode *node) {
  if (!checked(node != nullptr && pos != nullptr && pos->m_List == this && pos != node, __LINE__))
    return nullptr;
  node->ChangeList(this);
  return Chain::InsertAfter(pos, node);
}

SCC_DListRefNode *SCC_RefDList::Remove(SCC_DListRefNode *node) {
  if (!checked(node != nullptr, __LINE__)) return nullptr;
  node->ChangeList(nullptr);
  return node;
}

void SCC_RefDList::RemoveAll() noexcept {
  while (m_Head != nullptr) m_Head->ChangeList(nullptr);
}

void SCC_RefDList::Merge(SCC_RefDList &other) {
  if (&other == this) return;
  while (other.m_Head != nullptr) AddTail(other.m_Head);
}

int SCC_RefDList::IsValid() const noexcept {
  for (SCC_DListRefNode *node = m_Head; node != nullptr; node = node->m_Next)
    if (node->m_List != this) return 0;
  return 1;
}

int SCC_RefDList::NotifyNodes(int code, void *param) {
  int result = 0;
  SCC_DListRefNode *told = nullptr;  // the last node told that stayed in the list
  SCC_DListRefNode *node = m_Head;
  while (node != nullptr) {
    result = node->OnNotification(code, param);
    if (node->m_List == this) {
      told = node;
      node = node->m_Next;
    } else {
      node = told != nullptr && told->m_List == this ? told->m_Next : m_Head;
    }
  }
  return result;
}
