#include "Summary/CodingName.h"

#include <cstring>
#include <string_view>

namespace Vantor::Summary {

namespace {

/// A node of the register: the octets of labels from the 9th on, as far as they are alike.
struct Node {
  std::string_view octets;
  const char* name;  // null for labels that mean no coding in particular
};

using namespace std::string_view_literals;

/// A node stands before those above it.
constexpr Node kNodes[] = {
    // Pictures, not compressed.
    {"\x04\x01\x02\x01"sv, "uncompressed"},
    // MPEG.
    {"\x04\x01\x02\x02\x01\x02\x01\x01"sv, "D-10 50 Mbps"},
    {"\x04\x01\x02\x02\x01\x02\x01\x02"sv, "D-10 50 Mbps"},
    {"\x04\x01\x02\x02\x01\x02\x01\x03"sv, "D-10 40 Mbps"},
    {"\x04\x01\x02\x02\x01\x02\x01\x04"sv, "D-10 40 Mbps"},
    {"\x04\x01\x02\x02\x01\x02\x01\x05"sv, "D-10 30 Mbps"},
    {"\x04\x01\x02\x02\x01\x02\x01\x06"sv, "D-10 30 Mbps"},
    {"\x04\x01\x02\x02\x01\x10"sv, "MPEG-1"},
    {"\x04\x01\x02\x02\x01\x20"sv, "MPEG-4 Visual"},
    {"\x04\x01\x02\x02\x01\x31"sv, "AVC"},
    {"\x04\x01\x02\x02\x01\x32\x21"sv, "AVC-Intra 50"},
    {"\x04\x01\x02\x02\x01\x32\x31"sv, "AVC-Intra 100"},
    {"\x04\x01\x02\x02\x01\x32\x32"sv, "AVC-Intra 200"},
    {"\x04\x01\x02\x02\x01\x32"sv, "AVC Intra"},
    {"\x04\x01\x02\x02\x01\x41"sv, "HEVC"},
    {"\x04\x01\x02\x02\x01\x42"sv, "HEVC"},
    {"\x04\x01\x02\x02\x01\x43"sv, "HEVC"},
    {"\x04\x01\x02\x02\x01\x44"sv, "HEVC Intra"},
    {"\x04\x01\x02\x02\x01\x45"sv, "HEVC Intra"},
    {"\x04\x01\x02\x02\x01\x46"sv, "HEVC Intra"},
    {"\x04\x01\x02\x02\x01"sv, "MPEG-2"},
    // DV.
    {"\x04\x01\x02\x02\x02\x01"sv, "DV 25 Mbps"},
    {"\x04\x01\x02\x02\x02\x02\x01"sv, "DV 25 Mbps"},
    {"\x04\x01\x02\x02\x02\x02\x02"sv, "DV 25 Mbps"},
    {"\x04\x01\x02\x02\x02\x02\x03"sv, "DV 50 Mbps"},
    {"\x04\x01\x02\x02\x02\x02\x04"sv, "DV 50 Mbps"},
    {"\x04\x01\x02\x02\x02\x02"sv, "DV 100 Mbps"},
    // Codings of single pictures.
    {"\x04\x01\x02\x02\x03\x01\x08"sv, "HTJ2K"},
    {"\x04\x01\x02\x02\x03\x01"sv, "JPEG 2000"},
    {"\x04\x01\x02\x02\x03\x02"sv, "TIFF/EP"},
    {"\x04\x01\x02\x02\x03\x03"sv, "VC-2"},
    {"\x04\x01\x02\x02\x03\x04"sv, "ACES"},
    {"\x04\x01\x02\x02\x03\x05"sv, "VC-5"},
    {"\x04\x01\x02\x02\x03\x06\x01"sv, "ProRes 422 Proxy"},
    {"\x04\x01\x02\x02\x03\x06\x02"sv, "ProRes 422 LT"},
    {"\x04\x01\x02\x02\x03\x06\x03"sv, "ProRes 422"},
    {"\x04\x01\x02\x02\x03\x06\x04"sv, "ProRes 422 HQ"},
    {"\x04\x01\x02\x02\x03\x06\x05"sv, "ProRes 4444"},
    {"\x04\x01\x02\x02\x03\x06\x06"sv, "ProRes 4444 XQ"},
    {"\x04\x01\x02\x02\x03\x07"sv, "DNxUncompressed"},
    {"\x04\x01\x02\x02\x03\x08"sv, "JPEG XS"},
    {"\x04\x01\x02\x02\x03\x09"sv, "FFV1"},
    {"\x04\x01\x02\x02\x70"sv, "D-11"},
    {"\x04\x01\x02\x02\x71"sv, "VC-3"},
    {"\x04\x01\x02\x02\x72"sv, "VC-1"},
    // Sound.
    {"\x04\x02\x02\x01\x7f"sv, nullptr},  // undefined
    {"\x04\x02\x02\x01"sv, "PCM"},
    {"\x04\x02\x02\x02\x03\x01\x01"sv, "A-law"},
    {"\x04\x02\x02\x02\x03\x01\x10"sv, "DV audio"},
    {"\x04\x02\x02\x02\x03\x02\x01"sv, "AC-3"},
    {"\x04\x02\x02\x02\x03\x02\x04"sv, "MPEG audio Layer I"},
    {"\x04\x02\x02\x02\x03\x02\x05"sv, "MPEG audio"},
    {"\x04\x02\x02\x02\x03\x02\x06"sv, "MPEG audio"},
    {"\x04\x02\x02\x02\x03\x02\x1c"sv, "Dolby E"},
    {"\x04\x02\x02\x02\x03\x03"sv, "AAC"},
    {"\x04\x02\x02\x02\x04\x01\x01"sv, "MPEG audio Layer I"},
    {"\x04\x02\x02\x02\x04\x01\x02"sv, "MPEG audio Layer II"},
    {"\x04\x02\x02\x02\x04\x01\x03"sv, "MPEG audio Layer III"},
    {"\x04\x02\x02\x02\x04\x02\x01"sv, "MPEG audio Layer I"},
    {"\x04\x02\x02\x02\x04\x02\x02"sv, "MPEG audio Layer II"},
    {"\x04\x02\x02\x02\x04\x02\x03"sv, "MPEG audio Layer III"},
    {"\x04\x02\x02\x02\x04\x03"sv, "AAC"},
    {"\x04\x02\x02\x02\x04\x04"sv, "AAC"},
};

constexpr char kStart[] = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01};  // octet 8 follows

}  // namespace

std::optional<std::string> codingName(const Types::UniversalLabel& label) {
  const uint8* octets = label.rawBuffer();
  if (std::memcmp(octets, kStart, sizeof kStart) != 0) return std::nullopt;
  for (const auto& node : kNodes) {
    if (std::memcmp(octets + 8, node.octets.data(), node.octets.size()) != 0) continue;
    return node.name == nullptr ? std::nullopt : std::optional<std::string>(node.name);
  }
  return std::nullopt;
}

}  // namespace Vantor::Summary
