#include "CommandLine/EditOptions.h"

#include <array>
#include <cstdio>
#include <string>
#include <utility>

#include "Core/Platform/Strings.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

/// Identifies this program among the products that change files (ST 377-1, Product UID).
constexpr std::array<uint8, 16> kProductUID = {0x5d, 0x0c, 0x6b, 0x1e, 0x8f, 0x37, 0x4a, 0x92,
                                               0xb1, 0x44, 0x2c, 0x9e, 0x70, 0xd3, 0x5a, 0x16};

Types::ProductVersion programVersion() {
  unsigned major = 0, minor = 0, patch = 0;
  std::sscanf(VANTOR_VERSION, "%u.%u.%u", &major, &minor, &patch);
  return {static_cast<uint16>(major), static_cast<uint16>(minor), static_cast<uint16>(patch), 0,
          Types::ReleaseVersion::kReleased};
}

Edit::Signature programSignature() {
  return {u"Vantor", Utils::stringToWstring(kProgramName), Utils::stringToWstring(VANTOR_VERSION), programVersion(),
          Types::UUID(kProductUID)};
}

}  // namespace

void EditOptions::add(CLI::App& command) {
  command.add_flag("--only", isOnly_,
                   "Change nothing along with the edit: not the references to a\nrenamed package or track, nor "
                   "the labels in partition packs");
  rules_.addIgnore(command, "Write the file even if the edit breaks this rule");
  command.add_flag("--sign", isSigned_,
                   "Add an Identification of this program, with the time and a new\ngeneration, which changed "
                   "sets get, too");
  command.add_flag("--keep-undo", keepsUndo_,
                   "Keep the old bytes of a change in place beside the file, for\nmxfxml undo");
  command.add_flag("--force", isForced_,
                   "Change a file that is cut off behind its header metadata, or\nstill being written: in place only; "
                   "what is not checked then is\nprinted");
  command.add_flag("--dry-run", isDryRun_, "Print what would change, and which rules that would break");
  command.add_flag("--keep-going", keepsGoing_,
                   "Write the rest when a part of the edit cannot be taken, and end\nwith 1");
}

void EditOptions::requireFor(bool isCopy) const {
  for (const auto& [isGiven, name] : {std::pair(keepsUndo_, "--keep-undo"), std::pair(isForced_, "--force")}) {
    if (isCopy && isGiven) throw UsageError(std::string(name) + " is for a change in place, not for -o");
  }
}

Types::UUID EditOptions::productUID() { return Types::UUID(kProductUID); }

Edit::SaveOptions EditOptions::saving() const {
  Edit::SaveOptions options;
  options.completesEdits = !isOnly_;
  options.ignoredRules = rules_.ignored();
  options.keepsUndo = keepsUndo_;
  options.isForced = isForced_;
  if (isSigned_) options.signature = programSignature();
  return options;
}

}  // namespace Vantor::Tool
