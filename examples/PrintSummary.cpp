// Prints title, start timecode and duration of an MXF file.

#include <cstdio>
#include <exception>

#include <vantor/Core/Dictionary/BuiltInDictionary.h>
#include <vantor/Core/MXF/HeaderMetadataReader.h>
#include <vantor/Summary/Summary.h>

int main(int argc, char** argv) try {
  if (argc != 2) return 2;
  const auto metadata = Vantor::MXF::readHeaderMetadata(argv[1], Vantor::builtInDictionary());
  const auto summary = Vantor::Summary::summaryOf(*metadata);
  std::printf("title: %s\n", summary.title.value_or("none").c_str());
  if (summary.start) std::printf("start: %s\n", summary.start->text.c_str());
  if (summary.duration) std::printf("duration: %.3f s\n", summary.duration->seconds());
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
