#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace Vantor::Tool {

/// A variable of the environment that programs started here have, for as long as this lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    ::setenv(name, value.c_str(), 1);
  }
  ~ScopedVariable() {
    if (before_) ::setenv(name_, before_->c_str(), 1);
    if (!before_) ::unsetenv(name_);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace Vantor::Tool
