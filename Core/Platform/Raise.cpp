#include "Core/Platform/Raise.h"

#include <fmt/args.h>

#include "Core/Platform/Strings.h"

namespace Vantor::Exceptions {

namespace {

constexpr std::string_view kThisFile = "Core/Platform/Raise.cpp";
/// What compilers put in front of the paths of this repository.
constexpr std::string_view kRoot =
    std::string_view(__FILE__).substr(0, std::string_view(__FILE__).size() - kThisFile.size());

}  // namespace

std::string Format::file() const {
  std::string_view name = place_.file;
  if (isFixed_) return std::string(name);
  if (name.substr(0, kRoot.size()) == kRoot) name.remove_prefix(kRoot.size());
  return std::string(name.substr(0, name.rfind('.')));
}

std::string argumentText(const wstring& text) { return Utils::wstringToString(text); }

std::string formatted(const char* format, const std::vector<std::string>& arguments) {
  fmt::dynamic_format_arg_store<fmt::format_context> store;
  for (const auto& argument : arguments) store.push_back(fmt::string_view(argument));
  return fmt::vformat(format, store);
}

}  // namespace Vantor::Exceptions
