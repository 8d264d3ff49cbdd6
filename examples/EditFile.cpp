// Edits the header metadata of an MXF file: in memory, then on disk.

#include <cstdio>
#include <exception>

#include <vantor/Core/DataIO/Memory.h>
#include <vantor/Core/Dictionary/BuiltInDictionary.h>
#include <vantor/Edit/File.h>

int main(int argc, char** argv) try {
  if (argc != 2) return 2;
  Vantor::DataIO::File::FileDataSource file(argv[1]);
  Vantor::Bytes bytes(file.size());
  file.read(bytes.data(), bytes.size());
  Vantor::DataIO::Memory::MemoryFile memory(bytes.data(), bytes.size());
  Vantor::Edit::File inMemory(memory, Vantor::builtInDictionary());
  inMemory.metadata().find("Identification").set("ApplicationName", u"Ed");
  Vantor::DataIO::Memory::MemoryDataSink copy;
  inMemory.saveTo(copy);

  Vantor::Edit::File onDisk(argv[1], Vantor::builtInDictionary());
  onDisk.metadata().find("Identification").set("ApplicationName", u"Ed");
  std::printf("%zu partitions written\n", onDisk.save().partitions);
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
