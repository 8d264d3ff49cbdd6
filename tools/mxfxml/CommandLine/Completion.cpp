#include "CommandLine/Completion.h"

#include <algorithm>
#include <optional>

#include "CommandLine/CompletionHints.h"
#include "CommandLine/PathCompletion.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

namespace {

using Words = std::vector<std::string>;
using HintKind = CompletionHint::Kind;

bool isOption(const std::string& word) { return !word.empty() && word[0] == '-'; }
bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

/// What one command line asks for.
class CommandLine {
 public:
  CommandLine(const CLI::App& program, const Words& words) : words_(words), current_(words.back()), app_(&program) {
    for (std::size_t i = 0; i + 1 < words_.size(); ++i) take(words_[i]);
  }

  Words completions() const {
    if (option_ != nullptr) return of(*option_, current_, "");
    if (isOption(current_)) return options();
    if (app_->get_parent() == nullptr) return commands();
    const auto* positional = positionalAt(positionals_.size());
    return positional == nullptr ? Words() : of(*positional, current_, "");
  }

 private:
  void take(const std::string& word) {
    if (option_ != nullptr) {
      option_ = nullptr;  // its value
    } else if (isOption(word)) {
      const auto* option = find(word);
      if (option != nullptr && takesValue(*option)) option_ = option;
    } else if (const auto* command = findCommand(word)) {
      app_ = command;
    } else {
      positionals_.push_back(word);
    }
  }

  const CLI::App* findCommand(const std::string& name) const {
    for (const auto* command : app_->get_subcommands({})) {
      if (command->get_name() == name) return command;
    }
    return nullptr;
  }

  const CLI::Option* find(const std::string& name) const {
    for (const auto* option : app_->get_options()) {
      if (!option->get_positional() && option->check_name(name)) return option;
    }
    return nullptr;
  }

  /// The positional argument in a place; the last one takes all others.
  const CLI::Option* positionalAt(std::size_t place) const {
    const auto all = app_->get_options([](const CLI::Option* option) { return option->get_positional(); });
    if (all.empty()) return nullptr;
    const bool isLast = place + 1 >= all.size();
    return isLast && place + 1 > all.size() && all.back()->get_items_expected_max() == 1
               ? nullptr
               : all[std::min(place, all.size() - 1)];
  }

  Words commands() const {
    Words names;
    for (const auto* command : app_->get_subcommands({})) names.push_back(command->get_name());
    return beginning(names);
  }

  /// With "--name=", the values of that option.
  Words options() const {
    const auto equals = current_.find('=');
    if (equals != std::string::npos) {
      const auto* option = find(current_.substr(0, equals));
      const auto given = current_.substr(0, equals + 1);
      return option == nullptr ? Words() : of(*option, current_.substr(equals + 1), given);
    }
    Words names;
    for (const auto* option : app_->get_options()) {
      for (const auto& name : option->get_lnames()) names.push_back("--" + name);
    }
    return beginning(names);
  }

  Words beginning(const Words& names) const {
    Words found;
    for (const auto& name : names) {
      if (name.compare(0, current_.size(), current_) == 0) found.push_back(name);
    }
    return found;
  }

  /// @param word    the beginning of a value. @param before  what stands before it in the same word.
  Words of(const CLI::Option& option, const std::string& word, const std::string& before) const {
    const auto& what = hintOf(&option);
    Words found;
    if (what.kind == HintKind::kNames) {
      std::copy_if(what.names.begin(), what.names.end(), std::back_inserter(found),
                   [&](const std::string& name) { return name.compare(0, word.size(), word) == 0; });
    } else if (what.kind != HintKind::kNone) {
      found = pathCompletions(what.kind, word, file());
    }
    for (auto& one : found) one.insert(0, before);
    return found;
  }

  /// The file whose sets may be meant: the first argument that is one.
  std::optional<Path> file() const {
    for (const auto& word : positionals_) {
      const auto path = Platform::pathFromUTF8(word);
      std::error_code error;
      if (std::filesystem::is_regular_file(path, error)) return path;
    }
    return std::nullopt;
  }

  const Words& words_;
  const std::string& current_;
  const CLI::App* app_;
  const CLI::Option* option_ = nullptr;  // the last word, whose value follows
  Words positionals_;
};

}  // namespace

Words completionsOf(const CLI::App& program, const Words& words) {
  if (words.empty()) return {};
  auto found = CommandLine(program, words).completions();
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

}  // namespace Vantor::Tool
