//===- bench/bench_files.cpp - Files and directory search against stdio --===//
//
// A host writes its board files through SFM_File; without it, it would call
// stdio directly (fwrite per field, fgets per line, fprintf) or walk a folder
// with std::filesystem. Cases: typed records (two longs, a short, a char and a
// double, 19 bytes) written and read back, lines written and read back, and
// a search for "*.brd" in folders of 100 to 10,000 files (by name only, and with
// the status the library's search record carries). The file sizes are
// 1 MB and 100 MB, in the system's temporary folder (the page cache holds them:
// this measures the library's own cost, not the disk's).
//
//===------------------------------------------------------------------===//
#include "sfm.h"
#include "sfm_directory.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr long kRecordBytes = 4 + 4 + 2 + 1 + 8;

/// A scratch folder for one benchmark, with the manager the files need.
struct Scratch {
  SFM manager;
  std::string dir;
  Scratch() {
    dir = (std::filesystem::temp_directory_path() / "bfc-bench-XXXXXX").string();
    if (::mkdtemp(&dir[0]) == nullptr) std::abort();
    dir += "/";
  }
  ~Scratch() { std::filesystem::remove_all(dir); }
  std::string file(char const *name) const { return dir + name; }
};

void sizes(benchmark::internal::Benchmark *b) { b->Arg(1 << 20)->Arg(100 << 20)->Unit(benchmark::kMillisecond); }

long records(benchmark::State const &state) { return static_cast<long>(state.range(0)) / kRecordBytes; }

void writeRecordsBfc(char const *name, long count) {
  SFM_File file(name, "wb");
  for (long i = 0; i < count; ++i) {
    file.Put(i);
    file.Put(-i);
    file.Put(static_cast<short>(i & 0x7FFF));
    file.Put(static_cast<char>(i));
    file.Put(i * 0.5);
  }
}

void writeRecordsStdio(char const *name, long count) {
  std::FILE *const file = std::fopen(name, "wb");
  for (long i = 0; i < count; ++i) {
    int const x = static_cast<int>(i), y = static_cast<int>(-i);
    short const layer = static_cast<short>(i & 0x7FFF);
    char const kind = static_cast<char>(i);
    double const width = i * 0.5;
    std::fwrite(&x, 4, 1, file);
    std::fwrite(&y, 4, 1, file);
    std::fwrite(&layer, 2, 1, file);
    std::fwrite(&kind, 1, 1, file);
    std::fwrite(&width, 8, 1, file);
  }
  std::fclose(file);
}

void File_WriteRecords_Bfc(benchmark::State &state) {
  Scratch scratch;
  for (auto _ : state) writeRecordsBfc(scratch.file("r.bin").c_str(), records(state));
  state.SetBytesProcessed(state.iterations() * records(state) * kRecordBytes);
}
BENCHMARK(File_WriteRecords_Bfc)->Apply(sizes);

void File_WriteRecords_Stdio(benchmark::State &state) {
  Scratch scratch;
  for (auto _ : state) writeRecordsStdio(scratch.file("r.bin").c_str(), records(state));
  state.SetBytesProcessed(state.iterations() * records(state) * kRecordBytes);
}
BENCHMARK(File_WriteRecords_Stdio)->Apply(sizes);

void File_ReadRecords_Bfc(benchmark::State &state) {
  Scratch scratch;
  std::string const name = scratch.file("r.bin");
  writeRecordsStdio(name.c_str(), records(state));
  for (auto _ : state) {
    SFM_File file(name.c_str(), "rb");
    long x = 0, y = 0, sum = 0;
    short layer = 0;
    char kind = 0;
    double width = 0;
    for (long i = records(state); i > 0; --i) {
      file.Get(x), file.Get(y), file.Get(layer), file.Get(kind), file.Get(width);
      sum += x + y + layer + kind;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(state.iterations() * records(state) * kRecordBytes);
}
BENCHMARK(File_ReadRecords_Bfc)->Apply(sizes);

void File_ReadRecords_Stdio(benchmark::State &state) {
  Scratch scratch;
  std::string const name = scratch.file("r.bin");
  writeRecordsStdio(name.c_str(), records(state));
  for (auto _ : state) {
    std::FILE *const file = std::fopen(name.c_str(), "rb");
    int x = 0, y = 0;
    long sum = 0;
    short layer = 0;
    char kind = 0;
    double width = 0;
    for (long i = records(state); i > 0; --i) {
      std::fread(&x, 4, 1, file), std::fread(&y, 4, 1, file), std::fread(&layer, 2, 1, file);
      std::fread(&kind, 1, 1, file), std::fread(&width, 8, 1, file);
      sum += x + y + layer + kind;
    }
    std::fclose(file);
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(state.iterations() * records(state) * kRecordBytes);
}
BENCHMARK(File_ReadRecords_Stdio)->Apply(sizes);

// Lines of a netlist export: 60 bytes typical; 8 bytes is the worst case for a class whose
// every string is on the heap, against std::string's inline buffer.
void lineCases(benchmark::internal::Benchmark *b) {
  for (int length : {8, 60})
    for (int size : {1 << 20, 100 << 20}) b->Args({size, length});
  b->Unit(benchmark::kMillisecond);
}

std::string lineOf(benchmark::State const &state) { return std::string(static_cast<size_t>(state.range(1) - 1), 'n'); }
long lines(benchmark::State const &state) { return static_cast<long>(state.range(0) / state.range(1)); }

void File_WriteLines_Bfc(benchmark::State &state) {
  Scratch scratch;
  SYS_String const line(lineOf(state).c_str());
  for (auto _ : state) {
    SFM_File file(scratch.file("l.txt").c_str(), "w");
    for (long i = lines(state); i > 0; --i) file.WriteLine(line);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(File_WriteLines_Bfc)->Apply(lineCases);

void File_WriteLines_Stdio(benchmark::State &state) {
  Scratch scratch;
  std::string const line = lineOf(state);
  for (auto _ : state) {
    std::FILE *const file = std::fopen(scratch.file("l.txt").c_str(), "w");
    for (long i = lines(state); i > 0; --i) {
      std::fputs(line.c_str(), file);
      std::fputc('\n', file);
    }
    std::fclose(file);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(File_WriteLines_Stdio)->Apply(lineCases);

void writeLinesFile(std::string const &name, benchmark::State const &state) {
  std::FILE *const file = std::fopen(name.c_str(), "w");
  std::string const line = lineOf(state) + "\n";
  for (long i = lines(state); i > 0; --i) std::fputs(line.c_str(), file);
  std::fclose(file);
}

void File_ReadLines_Bfc(benchmark::State &state) {
  Scratch scratch;
  std::string const name = scratch.file("l.txt");
  writeLinesFile(name, state);
  for (auto _ : state) {
    SFM_File file(name.c_str(), "r");
    long total = 0;
    for (SYS_String line = file.GetLine(); !line.IsEmpty(); line = file.GetLine()) total += line.GetLength();
    benchmark::DoNotOptimize(total);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(File_ReadLines_Bfc)->Apply(lineCases);

void File_ReadLines_Stdio(benchmark::State &state) {
  Scratch scratch;
  std::string const name = scratch.file("l.txt");
  writeLinesFile(name, state);
  for (auto _ : state) {
    std::FILE *const file = std::fopen(name.c_str(), "r");
    char buffer[512];
    long total = 0;
    while (std::fgets(buffer, sizeof buffer, file) != nullptr) {
      std::string const line(buffer);
      total += static_cast<long>(line.size());
    }
    std::fclose(file);
    benchmark::DoNotOptimize(total);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(File_ReadLines_Stdio)->Apply(lineCases);

void File_Printf_Bfc(benchmark::State &state) {
  Scratch scratch;
  for (auto _ : state) {
    SFM_File file(scratch.file("p.txt").c_str(), "w");
    for (int i = 0; i < 100000; ++i) file.Printf("R%d %d %d %s\n", i, i * 127, -i, "0805");
  }
  state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(File_Printf_Bfc)->Unit(benchmark::kMillisecond);

void File_Printf_Stdio(benchmark::State &state) {
  Scratch scratch;
  for (auto _ : state) {
    std::FILE *const file = std::fopen(scratch.file("p.txt").c_str(), "w");
    for (int i = 0; i < 100000; ++i) std::fprintf(file, "R%d %d %d %s\n", i, i * 127, -i, "0805");
    std::fclose(file);
  }
  state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(File_Printf_Stdio)->Unit(benchmark::kMillisecond);

/// A folder of `count` files, half of them boards (*.brd) and half libraries (*.lib).
struct Folder : Scratch {
  explicit Folder(long count) {
    for (long i = 0; i < count; ++i) {
      std::string const name = dir + "part" + std::to_string(i) + (i % 2 == 0 ? ".brd" : ".lib");
      std::fclose(std::fopen(name.c_str(), "w"));
    }
  }
};

void searchSizes(benchmark::internal::Benchmark *b) {
  b->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
}

void Dir_SearchFiles_Bfc(benchmark::State &state) {
  Folder folder(state.range(0));
  SFM_Directory dir(folder.dir.c_str());
  for (auto _ : state) {
    long found = 0;
    for (char *name = dir.GetNextFile("*.brd"); name != nullptr; name = dir.GetNextFile(nullptr)) ++found;
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Dir_SearchFiles_Bfc)->Apply(searchSizes);

// The same question put to std::filesystem: regular files whose extension is ".brd", with
// the status that tells a file from a folder (the library's record carries it too).
void Dir_SearchFiles_Std(benchmark::State &state) {
  Folder folder(state.range(0));
  for (auto _ : state) {
    long found = 0;
    for (auto const &entry : std::filesystem::directory_iterator(folder.dir))
      if (entry.path().extension() == ".brd" && entry.is_regular_file()) ++found;
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Dir_SearchFiles_Std)->Apply(searchSizes);

// What the library's record holds besides the name (size, times, read-only) costs one status
// call per match; this is std::filesystem asked for the same.
void Dir_SearchFilesWithStatus_Std(benchmark::State &state) {
  Folder folder(state.range(0));
  for (auto _ : state) {
    long found = 0, bytes = 0;
    for (auto const &entry : std::filesystem::directory_iterator(folder.dir)) {
      if (entry.path().extension() != ".brd") continue;
      struct stat info;
      if (::stat(entry.path().c_str(), &info) == 0 && S_ISREG(info.st_mode)) ++found, bytes += info.st_size;
    }
    benchmark::DoNotOptimize(found + bytes);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Dir_SearchFilesWithStatus_Std)->Apply(searchSizes);

}  // namespace
