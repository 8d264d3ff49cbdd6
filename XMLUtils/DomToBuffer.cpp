#include "XMLUtils/DomToBuffer.h"

#include "Core/Platform/Strings.h"
#include "XMLUtils/DomWriter.h"

namespace Vantor::XMLUtils {

namespace {

std::string toUtf16LittleEndian(const wstring& text) {
  std::string bytes = "\xFF\xFE";
  bytes.reserve(2 + 2 * text.size());
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

/// @param unitSize  the fewest bytes that a code unit takes in the output.
void write(const xercesc::DOMNode* node, wstring& out, EncodingType encoding, const Limits& limits, uint64 unitSize) {
  out.clear();
  if (node != nullptr) DomWriter(out, encoding, {limits.outputSize, unitSize}).write(*node);
}

}  // namespace

void domToBuffer(const xercesc::DOMNode* node, wstring& out, EncodingType encoding, const Limits& limits) {
  write(node, out, encoding, limits, sizeof(char16_t));
}

void domToBuffer(const xercesc::DOMNode* node, wstring& out, EncodingType encoding) {
  domToBuffer(node, out, encoding, {});
}

void domToBytes(const xercesc::DOMNode* node, std::string& out, EncodingType encoding, const Limits& limits) {
  wstring text;
  write(node, text, encoding, limits, isUTF16(encoding) ? sizeof(char16_t) : 1);
  out = isUTF16(encoding) && !text.empty() ? toUtf16LittleEndian(text) : Vantor::Utils::wstringToString(text);
  if (out.size() > limits.outputSize) refuseBeyond(&Limits::outputSize, limits.outputSize);
}

void domToBytes(const xercesc::DOMNode* node, std::string& out, EncodingType encoding) {
  domToBytes(node, out, encoding, {});
}

}  // namespace Vantor::XMLUtils
