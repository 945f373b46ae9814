//===- inc/scc_map.h - Hash map that announces its changes --------------===//
//
// SCC_Map<K,V> chains its entries in a bucket array whose size is fixed when
// the map is made; it never rehashes. It is also a notifier: hooks connected to
// it hear code 1 after an entry is inserted, 2 before one is removed (both with
// the value's address), 5 when the map is set up and 6 when it is emptied or
// destroyed (parameter 0).
//
//===------------------------------------------------------------------===//
#ifndef BFC_SCC_MAP_H
#define BFC_SCC_MAP_H

#include "scc_compare.h"
#include "scc_event.h"
#include "scc_list.h"
#include "sys_base.h"

#include <cstdint>
#include <cstring>
#include <memory>

namespace scc_detail {

/// Key equality of the maps: `==`.
template <class K>
inline bool keysEqual(K const &a, K const &b) {
  return a == b;
}
/// The same as SYS_String's `==`, without a call into the library per probe; keys
/// that share one buffer are equal at once.
inline bool keysEqual(SYS_String const &a, SYS_String const &b) {
  char const *const left = a;
  char const *const right = b;
  return a.GetLength() == b.GetLength() && (left == right || std::strcmp(left, right) == 0);
}

/// A second, unreduced hash that a map keeps beside the bucket hash for keys whose
/// comparison reads memory outside the entry: a lookup then seldom touches the
/// text of an entry that only shares its bucket. Only for the default hash.
template <class K>
struct KeyCheck {
  static constexpr bool kEnabled = false;
  static std::uint32_t of(K const &) { return 0; }
};
template <>
struct KeyCheck<SYS_String> {
  static constexpr bool kEnabled = true;
  static std::uint32_t of(SYS_String const &key) { return SCC_TextHash(key, 0); }
};
template <>
struct KeyCheck<SCC_StrNoCase> {
  static constexpr bool kEnabled = true;
  static std::uint32_t of(SCC_StrNoCase const &key) { return SCC_TextHash(key, 1); }
};

/// An entry of SCC_Map<K,V>, owned by its bucket. String keys also cache their
/// unreduced text hash (see KeyCheck); other entries stay as small as they can.
template <class K, class V, bool checked>
struct MapNode : SCC_SListNode<MapNode<K, V, checked>> {
  MapNode(K const &key, long hash, std::uint32_t) : m_Key(key), m_Value(), m_Hash(hash) {}
  std::uint32_t GetCheck() const noexcept { return 0; }

  K m_Key;
  V m_Value;
  long m_Hash;  // what the hash function returned for m_Key
};
template <class K, class V>
struct MapNode<K, V, true> : SCC_SListNode<MapNode<K, V, true>> {
  MapNode(K const &key, long hash, std::uint32_t check) : m_Key(key), m_Value(), m_Hash(hash), m_Check(check) {}
  std::uint32_t GetCheck() const noexcept { return m_Check; }

  K m_Key;
  V m_Value;
  long m_Hash;            // what the hash function returned for m_Key
  std::uint32_t m_Check;  // the unreduced text hash under the default hash, else 0
};

}  // namespace scc_detail

/// A hash map from `K` to `V` whose bucket count is fixed at construction.
///
/// Keys are compared by `==`; each entry caches its hash, which a lookup compares
/// before the key. The hash function returns the bucket index; a hash outside
/// [0, count) is placed in bucket (hash as unsigned 32 bits) % count. Copying or
/// assigning a map moves its entries and hooks to the target, so the addresses
/// that hooks were told stay valid; the source is left empty with no hooks.
/// Hooks may insert and remove entries while they are told; a map must not be
/// destroyed by the hooks of its own notification.
template <class K, class V>
class SCC_Map : public SCC_Notifier {
public:
  typedef long (*HashFunction)(K const &key, long n);

  /// One entry, owned by its bucket: m_Next, m_Key, m_Value, m_Hash.
  typedef scc_detail::MapNode<K, V, scc_detail::KeyCheck<K>::kEnabled> MapNode;
  typedef SCC_SList<MapNode, 1, SCC_NullNotifier> Bucket;

  class _Iterator;
  class Iterator;

  /// A map with `bucketCount` buckets (at least 1) hashing with `hash`, or with the
  /// SCC_Hash overload for `K` when that is null. Keys are unique. Raises code 5.
  explicit SCC_Map(long bucketCount, HashFunction hash = nullptr)
      : m_Unique(1),
        m_BucketCount(bucketCount < 1 ? 1 : bucketCount),
        m_Count(0),
        m_HashFunction(hash != nullptr ? hash : &defaultHash),
        m_Buckets(new Bucket[m_BucketCount]),
        m_pInFlight(nullptr) {
    Notify(5, nullptr);
  }
  SCC_Map(SCC_Map &source)
      : SCC_Notifier(source),
        m_Unique(source.m_Unique),
        m_BucketCount(source.m_BucketCount),
        m_Count(0),
        m_HashFunction(source.m_HashFunction),
        m_Buckets(new Bucket[m_BucketCount]),
        m_pInFlight(nullptr) {
    takeEntries(source);
  }
  /// Empties this map (code 6 to its hooks), drops its hooks and takes over the
  /// source's entries and hooks; the bucket count and hash come along.
  SCC_Map &operator=(SCC_Map &source) {
    if (&source != this) {
      RemoveAll();
      SCC_Notifier::operator=(source);
      m_Unique = source.m_Unique;
      m_HashFunction = source.m_HashFunction;
      if (m_BucketCount != source.m_BucketCount) {
        m_Buckets.reset(new Bucket[source.m_BucketCount]);
        m_BucketCount = source.m_BucketCount;
      }
      takeEntries(source);
    }
    return *this;
  }
  /// Raises code 6, frees every entry, then disconnects the hooks.
  ~SCC_Map() override {
    Notify(6, nullptr);
    freeAll();
  }

  /// Hooks connect to a map as to any notifier.
  using SCC_Notifier::Insert;

  /// Inserts `key` with a default value and raises code 1 with the value's address.
  /// Returns that address; null when the key is present (nothing is raised), or
  /// when a hook removed the new entry while being told of it.
  V *Insert(K const &key) {
    Probe const probe = probeOf(key);
    Bucket &bucket = m_Buckets[bucketOf(probe.hash)];
    if (m_Unique != 0 && findIn(bucket, key, probe) != nullptr) return nullptr;
    return add(bucket, key, probe);
  }
  /// The value of `key`, inserted as by Insert when the key is absent.
  V *FindOrInsert(K const &key) {
    Probe const probe = probeOf(key);
    Bucket &bucket = m_Buckets[bucketOf(probe.hash)];
    if (MapNode *const node = findIn(bucket, key, probe)) return &node->m_Value;
    return add(bucket, key, probe);
  }
  /// The entry of `key`, or null. A `hash` of 0 or more is used instead of hashing
  /// the key (it must be what the hash function gives for it).
  MapNode *Lookup(K const &key, long hash = -1) const {
    Probe const probe = hash < 0 ? probeOf(key) : Probe{hash, 0, false};
    return findIn(m_Buckets[bucketOf(probe.hash)], key, probe);
  }
  /// Removes the entry of `key`: raises code 2 with its value's address, then frees
  /// it. Returns 1, or 0 when the key is absent or its entry is already being removed.
  int Remove(K const &key) {
    Probe const probe = probeOf(key);
    MapNode *const node = findIn(m_Buckets[bucketOf(probe.hash)], key, probe);
    if (node == nullptr) return 0;
    for (InFlight const *flight = m_pInFlight; flight != nullptr; flight = flight->m_pOuter)
      if (flight->m_pNode == node && flight->m_Removing) return 0;
    {
      InFlight flight(*this, node, true);
      Notify(2, ParamOf(&node->m_Value));
      if (flight.m_pNode == nullptr) return 1;  // emptied by a hook meanwhile
    }
    --m_Count;
    m_Buckets[bucketOf(node->m_Hash)].Remove(node);
    freeNode(node);
    return 1;
  }
  /// Raises code 6, then frees every entry without raising code 2.
  void RemoveAll() {
    Notify(6, nullptr);
    freeAll();
  }

  long GetCount() const noexcept { return m_Count; }
  long GetBucketCount() const noexcept { return m_BucketCount; }
  HashFunction GetHashFunction() const noexcept { return m_HashFunction; }

  /// The value a code 1 or 2 is about, from the notification's parameter.
  static V *ValueOf(SYS_Handle *param) noexcept { return reinterpret_cast<V *>(param); }
  /// The parameter that carries a value's address.
  static SYS_Handle *ParamOf(V *value) noexcept { return reinterpret_cast<SYS_Handle *>(value); }

private:
  friend class _Iterator;

  /// An entry whose notification is running. Freeing the entry clears m_pNode, so
  /// the operation that raised the code knows it is gone.
  struct InFlight {
    InFlight(SCC_Map &map, MapNode *node, bool removing) noexcept
        : m_Map(map), m_pNode(node), m_pOuter(map.m_pInFlight), m_Removing(removing) {
      map.m_pInFlight = this;
    }
    ~InFlight() { m_Map.m_pInFlight = m_pOuter; }
    InFlight(InFlight const &) = delete;
    InFlight &operator=(InFlight const &) = delete;

    SCC_Map &m_Map;
    MapNode *m_pNode;
    InFlight *m_pOuter;
    bool m_Removing;
  };

  /// What a key is looked up by: its bucket hash and, for string keys under the
  /// default hash, the unreduced text hash that entries cache beside it.
  struct Probe {
    long hash;
    std::uint32_t check;
    bool compareCheck;
  };

  static long defaultHash(K const &key, long n) { return SCC_Hash(key, n); }

  Probe probeOf(K const &key) const {
    if (m_HashFunction == &defaultHash) {
      if constexpr (scc_detail::KeyCheck<K>::kEnabled) {
        // The default text hash is the unreduced one modulo the bucket count.
        std::uint32_t const full = scc_detail::KeyCheck<K>::of(key);
        return {static_cast<long>(full % static_cast<std::uint32_t>(m_BucketCount)), full, true};
      }
      return {defaultHash(key, m_BucketCount), 0, false};  // called directly, to be inlined
    }
    return {m_HashFunction(key, m_BucketCount), 0, false};
  }
  long bucketOf(long hash) const noexcept {
    if (static_cast<unsigned long>(hash) < static_cast<unsigned long>(m_BucketCount)) return hash;
    return static_cast<long>(static_cast<std::uint32_t>(hash) % static_cast<std::uint32_t>(m_BucketCount));
  }
  static MapNode *findIn(Bucket const &bucket, K const &key, Probe const &probe) {
    for (MapNode *node = bucket.GetHead(); node != nullptr; node = node->m_Next) {
      if (node->m_Hash == probe.hash && (!probe.compareCheck || node->GetCheck() == probe.check) &&
          scc_detail::keysEqual(node->m_Key, key))
        return node;
    }
    return nullptr;
  }
  V *add(Bucket &bucket, K const &key, Probe const &probe) {
    MapNode *const node = bucket.AddHead(new MapNode(key, probe.hash, probe.check));
    ++m_Count;
    InFlight flight(*this, node, false);
    Notify(1, ParamOf(&node->m_Value));
    return flight.m_pNode != nullptr ? &node->m_Value : nullptr;
  }
  void freeNode(MapNode *node) {
    for (InFlight *flight = m_pInFlight; flight != nullptr; flight = flight->m_pOuter)
      if (flight->m_pNode == node) flight->m_pNode = nullptr;
    delete node;
  }
  /// Frees every entry; each is unlinked before its value is destroyed, so a value
  /// whose destructor looks at the map finds it consistent.
  void freeAll() {
    for (long index = 0; index < m_BucketCount; ++index) {
      while (MapNode *const node = m_Buckets[index].RemoveHead()) {
        --m_Count;
        freeNode(node);
      }
    }
  }
  /// Takes the source's entries by exchanging bucket arrays: this map is empty and
  /// has the source's bucket count, so the source is left empty and consistent.
  void takeEntries(SCC_Map &source) noexcept {
    m_Buckets.swap(source.m_Buckets);
    m_Count = source.m_Count;
    source.m_Count = 0;
  }

  int m_Unique;
  long m_BucketCount;
  long m_Count;
  HashFunction m_HashFunction;
  std::unique_ptr<Bucket[]> m_Buckets;
  InFlight *m_pInFlight;
};

/// Walks every entry of a map: buckets from index 0 upward, each chain from its
/// head (so later insertions into one bucket come first). Removing the entry it
/// stands on makes it unusable; other changes are safe between steps.
template <class K, class V>
class SCC_Map<K, V>::_Iterator : public SCC_Map<K, V>::Bucket::Iterator {
  typedef typename SCC_Map<K, V>::Bucket::Iterator Base;

public:
  _Iterator() noexcept : m_Bucket(0), m_Map(nullptr) {}
  /// Stands on the first entry of `map`.
  explicit _Iterator(SCC_Map *map) : m_Bucket(0), m_Map(nullptr) { First(map); }

  void First(SCC_Map *map) {
    m_Map = map;
    m_Bucket = 0;
    if (map != nullptr) {
      seek();
    } else {
      this->SetCurrent(nullptr);
    }
  }
  /// The next entry; invalid after the last.
  void Next() {
    if (this->m_Node == nullptr) return;
    if (this->m_Node->m_Next != nullptr) {
      this->SetCurrent(this->m_Node->m_Next);
    } else {
      ++m_Bucket;
      seek();
    }
  }
  /// Stands on `node` of `map` (nowhere for a null node or map).
  void Set(SCC_Map *map, MapNode *node) {
    m_Map = map;
    m_Bucket = map != nullptr && node != nullptr ? map->bucketOf(node->m_Hash) : 0;
    this->SetCurrent(map != nullptr ? node : nullptr);
  }
  /// 1 when it has a map, an entry and a bucket index below the bucket count.
  int IsValid() const noexcept {
    return m_Map != nullptr && this->m_Node != nullptr && m_Bucket >= 0 && m_Bucket < m_Map->m_BucketCount;
  }
  SCC_Map *GetMap() const noexcept { return m_Map; }
  long GetBucket() const noexcept { return m_Bucket; }

protected:
  long m_Bucket;
  SCC_Map *m_Map;

private:
  /// Stands on the head of the first non-empty bucket from m_Bucket on.
  void seek() {
    while (m_Bucket < m_Map->m_BucketCount && m_Map->m_Buckets[m_Bucket].IsEmpty()) ++m_Bucket;
    this->SetCurrent(m_Bucket < m_Map->m_BucketCount ? m_Map->m_Buckets[m_Bucket].GetHead() : nullptr);
  }
};

/// A map iterator with typed access to the entry it stands on.
template <class K, class V>
class SCC_Map<K, V>::Iterator : public SCC_Map<K, V>::_Iterator {
public:
  Iterator() noexcept = default;
  explicit Iterator(SCC_Map *map) : SCC_Map<K, V>::_Iterator(map) {}

  /// The key and value of the entry; the iterator must be valid.
  K const &GetKey() const noexcept { return this->m_Node->m_Key; }
  V &GetValue() const noexcept { return this->m_Node->m_Value; }
};

#endif
