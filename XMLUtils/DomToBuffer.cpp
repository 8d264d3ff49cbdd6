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

}  // namespace

void domToBuffer(const xercesc::DOMNode* node, wstring& out, EncodingType encoding) {
  out.clear();
  if (node != nullptr) DomWriter(out, encoding).write(*node);
}

void domToBytes(const xercesc::DOMNode* node, std::string& out, EncodingType encoding) {
  wstring text;
  domToBuffer(node, text, encoding);
  const bool isUtf16 = encoding == EncodingType::kUTF16 || encoding == EncodingType::kUTF16Indented;
  out = isUtf16 && !text.empty() ? toUtf16LittleEndian(text) : Vantor::Utils::wstringToString(text);
}

}  // namespace Vantor::XMLUtils
