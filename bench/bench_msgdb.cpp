//===- bench/bench_msgdb.cpp - The message database against a hash map ---===//
//
// A host that did not use SFM_MessageDB would read its catalogue into an
// std::unordered_map<int, std::string> and keep every text in memory. Cases:
// loading catalogues of 1,000 to 100,000 messages (100 to a section) from the
// text source, and of up to 32,000 from the compiled form (its header counts
// at most 32,767 entries); compiling (Save) them; 1,000,000 lookups in random
// order of keys that exist, and of keys that do not; and walking a section.
// The database keeps only positions and reads each text from its file: its
// lookups pay a seek and a read where the map pays a hash and a copy.
//
//===------------------------------------------------------------------===//
#include "sfm.h"
#include "sfm_msgdb.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kPerSection = 100;

/// A catalogue of `count` messages in its two forms, in a scratch folder, with the
/// manager the database's file needs. Message i is number i % 100 + 1 of section i / 100,
/// whose base is 2 + 102 * (i / 100) (each head adds 2 to the section's last key).
struct Catalogue {
  SFM manager;
  std::string dir, source, compiled;
  std::vector<int> keys;

  explicit Catalogue(long count) {
    dir = (std::filesystem::temp_directory_path() / "bfc-bench-XXXXXX").string();
    if (::mkdtemp(&dir[0]) == nullptr) std::abort();
    source = dir + "/cat.msgs";
    compiled = dir + "/cat.mdb";
    std::ofstream out(source);
    for (long i = 0; i < count; ++i) {
      if (i % kPerSection == 0) out << "[Section " << i / kPerSection << "]\n";
      int const number = static_cast<int>(i % kPerSection) + 1;
      out << number << ":Message " << i << " of the board-design host, with %s and %d$\n";
      keys.push_back(static_cast<int>(2 + 102 * (i / kPerSection) + number));
    }
    out.close();
    if (count <= 32767) SFM_MessageDB(source.c_str(), 0).Save(compiled.c_str());
  }
  ~Catalogue() { std::filesystem::remove_all(dir); }

  /// The same texts as the map a host would otherwise build: parsed from the source.
  std::unordered_map<int, std::string> Map() const {
    std::unordered_map<int, std::string> map;
    std::ifstream in(source);
    std::string line;
    int base = 0, last = 0;
    while (std::getline(in, line)) {
      if (line[0] == '[') {
        base = last += 2;
        map.emplace(-base, line.substr(1, line.size() - 2));
        continue;
      }
      std::size_t const colon = line.find(':');
      last = base + std::atoi(line.c_str());
      std::string text = line.substr(colon + 1);
      if (!text.empty() && text.back() == '$') text.pop_back();
      map.emplace(last, std::move(text));
    }
    return map;
  }

  /// `count` existing keys in random order (fixed seed).
  std::vector<int> Shuffled(long count) const {
    std::mt19937 random(5);
    std::vector<int> order(static_cast<std::size_t>(count));
    for (int &key : order) key = keys[random() % keys.size()];
    return order;
  }
};

void loadSizes(benchmark::internal::Benchmark *b) {
  b->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}
void compiledSizes(benchmark::internal::Benchmark *b) {
  b->Arg(1000)->Arg(10000)->Arg(32000)->Unit(benchmark::kMillisecond);
}
constexpr long kLookups = 1000000;

void Msgdb_LoadText_Bfc(benchmark::State &state) {
  Catalogue const catalogue(state.range(0));
  for (auto _ : state) {
    SFM_MessageDB db(catalogue.source.c_str(), 0);
    benchmark::DoNotOptimize(db.GetCount());
  }
}
BENCHMARK(Msgdb_LoadText_Bfc)->Apply(loadSizes);

void Msgdb_LoadText_Map(benchmark::State &state) {
  Catalogue const catalogue(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(catalogue.Map().size());
}
BENCHMARK(Msgdb_LoadText_Map)->Apply(loadSizes);

void Msgdb_LoadCompiled_Bfc(benchmark::State &state) {
  Catalogue const catalogue(state.range(0));
  for (auto _ : state) {
    SFM_MessageDB db(catalogue.compiled.c_str());
    benchmark::DoNotOptimize(db.GetCount());
  }
}
BENCHMARK(Msgdb_LoadCompiled_Bfc)->Apply(compiledSizes);

// The map's own binary form: the file read whole, each record's text copied into the map.
void Msgdb_LoadCompiled_Map(benchmark::State &state) {
  Catalogue const catalogue(state.range(0));
  for (auto _ : state) {
    std::ifstream in(catalogue.compiled, std::ios::binary);
    std::string const bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    auto const field = [&](std::size_t at) {
      int value;
      std::memcpy(&value, bytes.data() + at, 4);
      return value;
    };
    int const count = static_cast<unsigned char>(bytes[4]) | static_cast<unsigned char>(bytes[5]) << 8;
    std::size_t const textStart = 14 + 36u * static_cast<std::size_t>(count);
    std::unordered_map<int, std::string> map;
    map.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      std::size_t const record = 14 + 36u * static_cast<std::size_t>(i);
      int key = std::atoi(bytes.data() + record + 16);
      if (bytes[record + 2] == 1) key = -1 - key;
      map.emplace(key, std::string(bytes.data() + textStart + field(record + 4)));
    }
    benchmark::DoNotOptimize(map.size());
  }
}
BENCHMARK(Msgdb_LoadCompiled_Map)->Apply(compiledSizes);

void Msgdb_Compile_Bfc(benchmark::State &state) {
  Catalogue const catalogue(state.range(0));
  SFM_MessageDB db(catalogue.source.c_str(), 0);
  std::string const target = catalogue.dir + "/out.mdb";
  for (auto _ : state) benchmark::DoNotOptimize(db.Save(target.c_str()));
}
BENCHMARK(Msgdb_Compile_Bfc)->Apply(compiledSizes);

// The peer writes its map sorted by key, each text with its key: the least a compiled
// catalogue needs.
void Msgdb_Compile_Map(benchmark::State &state) {
  Catalogue const catalogue(state.range(0));
  auto const map = catalogue.Map();
  std::string const target = catalogue.dir + "/out.bin";
  for (auto _ : state) {
    std::vector<std::pair<int, std::string const *>> sorted;
    sorted.reserve(map.size());
    for (auto const &entry : map) sorted.emplace_back(entry.first, &entry.second);
    std::sort(sorted.begin(), sorted.end());
    std::FILE *const out = std::fopen(target.c_str(), "wb");
    for (auto const &entry : sorted) {
      std::fwrite(&entry.first, 4, 1, out);
      std::fwrite(entry.second->c_str(), 1, entry.second->size() + 1, out);
    }
    std::fclose(out);
  }
}
BENCHMARK(Msgdb_Compile_Map)->Apply(compiledSizes);

void Msgdb_Lookup_Bfc(benchmark::State &state) {
  Catalogue const catalogue(100000);
  SFM_MessageDB db(catalogue.source.c_str(), 0);
  std::vector<int> const order = state.range(0) ? catalogue.Shuffled(kLookups) : std::vector<int>(kLookups, 3);
  for (auto _ : state)
    for (int const key : order) benchmark::DoNotOptimize(db.getTxt(key).GetLength());
  state.SetItemsProcessed(state.iterations() * kLookups);
}
BENCHMARK(Msgdb_Lookup_Bfc)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void Msgdb_Lookup_Map(benchmark::State &state) {
  Catalogue const catalogue(100000);
  auto const map = catalogue.Map();
  std::vector<int> const order = state.range(0) ? catalogue.Shuffled(kLookups) : std::vector<int>(kLookups, 3);
  for (auto _ : state)
    for (int const key : order) {
      auto const found = map.find(key);
      benchmark::DoNotOptimize(found != map.end() ? std::string(found->second).size() : 0);
    }
  state.SetItemsProcessed(state.iterations() * kLookups);
}
BENCHMARK(Msgdb_Lookup_Map)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Keys that are not there: both answer from the hash alone.
void Msgdb_LookupMissing_Bfc(benchmark::State &state) {
  Catalogue const catalogue(100000);
  SFM_MessageDB db(catalogue.source.c_str(), 0);
  for (auto _ : state)
    for (long i = 0; i < kLookups; ++i) benchmark::DoNotOptimize(db.getTxt(20000000 + i).GetLength());
  state.SetItemsProcessed(state.iterations() * kLookups);
}
BENCHMARK(Msgdb_LookupMissing_Bfc)->Unit(benchmark::kMillisecond);

void Msgdb_LookupMissing_Map(benchmark::State &state) {
  Catalogue const catalogue(100000);
  auto const map = catalogue.Map();
  for (auto _ : state)
    for (long i = 0; i < kLookups; ++i) {
      auto const found = map.find(static_cast<int>(20000000 + i));
      benchmark::DoNotOptimize(found != map.end() ? std::string(found->second).size() : 0);
    }
  state.SetItemsProcessed(state.iterations() * kLookups);
}
BENCHMARK(Msgdb_LookupMissing_Map)->Unit(benchmark::kMillisecond);

// Walking every section of the catalogue in number order, against the map probed key by key.
void Msgdb_WalkSections_Bfc(benchmark::State &state) {
  Catalogue const catalogue(100000);
  SFM_MessageDB db(catalogue.source.c_str(), 0);
  for (auto _ : state)
    for (int s = 0; s < 1000; ++s)
      for (SFM_MessageDB::SectionIterator it(&db, ("Section " + std::to_string(s)).c_str(), 1); !it.IsEmpty(); ++it)
        benchmark::DoNotOptimize(SYS_String(it).GetLength());
}
BENCHMARK(Msgdb_WalkSections_Bfc)->Unit(benchmark::kMillisecond);

void Msgdb_WalkSections_Map(benchmark::State &state) {
  Catalogue const catalogue(100000);
  auto const map = catalogue.Map();
  for (auto _ : state)
    for (int s = 0; s < 1000; ++s)
      for (int number = 1; number <= kPerSection; ++number) {
        auto const found = map.find(2 + 102 * s + number);
        benchmark::DoNotOptimize(found != map.end() ? std::string(found->second).size() : 0);
      }
}
BENCHMARK(Msgdb_WalkSections_Map)->Unit(benchmark::kMillisecond);

}  // namespace
