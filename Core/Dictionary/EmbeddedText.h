#pragma once

#include <string_view>

/// The data files of this folder, as the build put them into the library.
namespace Vantor::Embedded {

std::string_view smpteRegisters();
std::string_view smpteLabels();
std::string_view smpteSupplement();
std::string_view smpteTypes();
std::string_view commonNames();
std::string_view smpteDescriptions();  ///< in vantor_registers

}  // namespace Vantor::Embedded
