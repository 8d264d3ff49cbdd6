#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

/// Terminals, and what standard output can show.
namespace Vantor::Tool {

/// Whether a stream is a terminal.
bool isTerminal(std::FILE* stream = stdout);

/// A variable of the environment; empty when it is not set.
std::string environment(const char* name);

/// Columns of the terminal: COLUMNS in the environment where it is a number, else the width of the terminal that
/// standard output is, else 80. From 40 to 1000.
std::size_t terminalColumns();

/// Whether the environment asks for UTF-8: LC_ALL, else LC_CTYPE, else LANG.
bool takesUTF8();

enum class ColorChoice { kAuto, kAlways, kNever };

/// kAuto: on a terminal that has colours, and without NO_COLOR in the environment.
bool wantsColor(ColorChoice choice);

}  // namespace Vantor::Tool
