#include "Plan/PlanTable.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <system_error>

#include "CommandLine/PropertyPaths.h"
#include "Core/DataIO/File.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/NearestName.h"
#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

std::string bytesOfTable(const Path& file) {
  return namingFile(file, [&] {
    DataIO::File::FileDataSource source(file);
    std::string text(static_cast<std::size_t>(source.size()), '\0');
    source.read(reinterpret_cast<uint8*>(text.data()), text.size());
    return text;
  });
}

struct Column {
  const char* name;
  bool isRequired;
};

/// The records of a table by the names of their columns, and its mistakes.
class PlanTable {
 public:
  PlanTable(const Path& file, std::vector<Column> columns) : file_(file), columns_(std::move(columns)) {
    const auto text = bytesOfTable(file);
    namingFile(file, [&] { records_ = readCSV(text, separatorOf(text)); });
    if (records_.empty())
      throw OtherFileError(Platform::pathToUTF8(file) + ": the table is empty; its first line is " + header());
    readHeader();
    requireNoMistakes();
    records_.erase(records_.begin());
    for (const auto& record : records_) requireCells(record);
  }

  /// The records that have a cell for each column.
  std::vector<const CSVRecord*> records() const {
    std::vector<const CSVRecord*> whole;
    for (const auto& record : records_) {
      if (record.size() == places_.size()) whole.push_back(&record);
    }
    return whole;
  }
  /// An empty cell where the table has no such column.
  CSVCell cell(const CSVRecord& record, const char* column) const {
    const auto at = std::find(places_.begin(), places_.end(), column);
    if (at == places_.end()) return {"", record.front().line, record.front().column};
    return record[static_cast<std::size_t>(at - places_.begin())];
  }
  void addMistake(const CSVCell& cell, const std::string& mistake) {
    printMessage(Platform::pathToUTF8(file_) + ": " + placeOf(cell) + ": " + mistake);
    ++mistakes_;
  }
  void requireNoMistakes() const {
    if (mistakes_ == 0) return;
    throw OtherFileError(Platform::pathToUTF8(file_) + ": the table has " +
                         (mistakes_ == 1 ? "a mistake" : std::to_string(mistakes_) + " mistakes") +
                         "; nothing is written");
  }

 private:
  std::string header() const {
    std::string text;
    for (const auto& column : columns_) {
      if (column.isRequired) text += (text.empty() ? "" : ",") + std::string(column.name);
    }
    return text;
  }

  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& column : columns_) names.emplace_back(column.name);
    return names;
  }

  void readHeader() {
    for (const auto& cell : records_.front()) readName(cell);
    for (const auto& column : columns_) {
      if (!column.isRequired || hasColumn(column.name)) continue;
      addMistake(records_.front().front(),
                 std::string("the table has no column '") + column.name + "'; its first line is " + header());
    }
  }

  void readName(const CSVCell& cell) {
    std::string name = cell.text;
    name.erase(0, name.find_first_not_of(' '));
    name.erase(name.find_last_not_of(' ') + 1);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    const auto known = names();
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      addMistake(cell, "there is no column '" + cell.text + "'" + Platform::suggestion(name, known));
    } else if (hasColumn(name)) {
      addMistake(cell, "the column '" + name + "' is there twice");
    }
    places_.push_back(name);
  }

  bool hasColumn(const std::string& name) const {
    return std::find(places_.begin(), places_.end(), name) != places_.end();
  }

  void requireCells(const CSVRecord& record) {
    if (record.size() == places_.size()) return;
    addMistake(record.front(),
               "the row has " + std::to_string(record.size()) + (record.size() == 1 ? " cell" : " cells") + ", not " +
                   std::to_string(places_.size()) + "; a cell with separators or line ends needs quotes around it");
  }

  Path file_;
  std::vector<Column> columns_;
  std::vector<CSVRecord> records_;
  std::vector<std::string> places_;  // the name of each column
  std::size_t mistakes_ = 0;
};

Path inFolderOf(const Path& table, const std::string& name) {
  return table.parent_path() / Platform::pathFromUTF8(name);
}

/// The same for all spellings of a path.
Path keyOf(const Path& file) {
  std::error_code error;
  auto key = std::filesystem::weakly_canonical(file, error);
  return error ? file : key;
}

/// Gathers rows by their files.
class Gatherer {
 public:
  explicit Gatherer(const Path& table) : table_(table) {}

  /// The file that a row is about, without the row.
  PlannedFile& fileOf(const CSVCell& cell) {
    const auto path = inFolderOf(table_, cell.text);
    const auto [at, isNew] = numbers_.emplace(keyOf(path), plan_.size());
    if (isNew) plan_.push_back({path});
    return plan_[at->second];
  }
  Plan take() { return std::move(plan_); }

 private:
  const Path& table_;
  std::map<Path, std::size_t> numbers_;
  Plan plan_;
};

/// None where the action is no action, which is a mistake.
std::optional<bool> isRemoval(PlanTable& table, const CSVRecord& record) {
  const auto action = table.cell(record, "action");
  const bool removes = action.text == "remove";
  if (!removes && !action.text.empty() && action.text != "set") {
    table.addMistake(action, "'" + action.text + "' is no action: expected 'set' or 'remove'");
    return std::nullopt;
  }
  const auto value = table.cell(record, "value");
  if (!removes || value.text.empty()) return removes;
  table.addMistake(value, "a property that is removed has no value");
  return std::nullopt;
}

std::optional<PlanRow> readSetRow(PlanTable& table, const CSVRecord& record) {
  PlanRow row{table.cell(record, "file"), table.cell(record, "path"), {}};
  const auto removes = isRemoval(table, record);
  if (row.file.text.empty()) table.addMistake(row.file, "the file name is empty");
  if (!removes || row.file.text.empty()) return std::nullopt;
  try {
    row.change = parsePropertyPath(row.what.text, false);
  } catch (const UsageError& error) {
    table.addMistake(row.what, error.what());
    return std::nullopt;
  } catch (const Exceptions::InvalidFormat& error) {
    table.addMistake(row.what, error.message());
    return std::nullopt;
  }
  if (!*removes) row.change->value = table.cell(record, "value").text;
  return row;
}

/// The row that changes a property first, by the file and the path.
using Given = std::map<std::pair<Path, std::string>, PlanRow>;

/// A row that repeats another one is left out; one that contradicts it is a mistake.
bool isNewRow(PlanTable& table, const PlannedFile& file, const PlanRow& row, Given& given) {
  const auto [at, isNew] = given.emplace(std::pair(file.file, row.change->choice), row);
  const auto& earlier = at->second;
  if (earlier.change->value != row.change->value) {
    table.addMistake(row.what, "'" + row.what.text + "' of '" + row.file.text + "' has another value in line " +
                                   std::to_string(earlier.what.line));
  }
  return isNew;
}

}  // namespace

Plan readSetPlan(const Path& path) {
  PlanTable table(path, {{"file", true}, {"path", true}, {"value", true}, {"action", false}});
  Gatherer files(path);
  Given given;
  for (const auto* record : table.records()) {
    auto row = readSetRow(table, *record);
    if (!row) continue;
    auto& file = files.fileOf(row->file);
    if (isNewRow(table, file, *row, given)) file.rows.push_back(std::move(*row));
  }
  table.requireNoMistakes();
  return files.take();
}

Plan readImportPlan(const Path& path) {
  PlanTable table(path, {{"file", true}, {"document", true}});
  Gatherer files(path);
  for (const auto* record : table.records()) {
    PlanRow row{table.cell(*record, "file"), table.cell(*record, "document"), {}};
    for (const auto& cell : {row.file, row.what}) {
      if (cell.text.empty()) table.addMistake(cell, "the file name is empty");
    }
    auto& rows = files.fileOf(row.file).rows;
    if (!rows.empty()) {
      table.addMistake(row.file, "'" + row.file.text + "' has a document in line " +
                                     std::to_string(rows.front().file.line) + " already");
    }
    rows.push_back(std::move(row));
  }
  table.requireNoMistakes();
  return files.take();
}

Path documentOf(const Path& table, const PlanRow& row) { return inFolderOf(table, row.what.text); }

void writeCopies(Plan& plan, const Path& folder) {
  std::error_code error;
  if (std::filesystem::exists(folder, error) && !std::filesystem::is_directory(folder, error)) {
    throw UsageError("-o names a folder for the copies of a plan, but '" + Platform::pathToUTF8(folder) +
                     "' is a file");
  }
  std::map<Path, const PlannedFile*> files, copies;
  for (const auto& file : plan) files.emplace(keyOf(file.file), &file);
  for (auto& file : plan) {
    file.copy = folder / file.file.filename();
    const auto key = keyOf(*file.copy);
    if (files.count(key) != 0) {
      throw UsageError("the copy of " + Platform::pathToUTF8(file.file) + " would replace " +
                       Platform::pathToUTF8(files.at(key)->file) + "; choose another folder");
    }
    const auto [at, isNew] = copies.emplace(key, &file);
    if (!isNew) {
      throw UsageError(Platform::pathToUTF8(at->second->file) + " and " + Platform::pathToUTF8(file.file) +
                       " would have one copy; write them into two folders");
    }
  }
}

}  // namespace Vantor::Tool
