#include "tests/imaging/SampleManifest.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace lumivane {

namespace {

std::string withoutEscapes(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain += text[i];
      continue;
    }
    const char code = text[++i];
    plain += code == 't' ? '\t' : code == 'n' ? '\n' : code == 'r' ? '\r' : code;
  }
  return plain;
}

std::vector<std::string> cells(const std::string& line) {
  std::vector<std::string> result;
  std::istringstream in(line);
  for (std::string cell; std::getline(in, cell, '\t');) result.push_back(withoutEscapes(cell));
  return result;
}

}  // namespace

std::optional<std::filesystem::path> samplesFolder() {
  const char* named = std::getenv("LUMIVANE_SAMPLES");
  const std::filesystem::path folder =
      named != nullptr ? std::filesystem::path(named)
                       : std::filesystem::path(LUMIVANE_SOURCE_DIR) / ".." / "shared" / "samples";
  if (!std::filesystem::exists(folder / "MANIFEST.tsv")) return std::nullopt;
  return folder;
}

const std::string& SampleRow::operator[](const std::string& column) const {
  static const std::string kEmpty;
  const auto found = columns.find(column);
  return found == columns.end() ? kEmpty : found->second;
}

std::vector<SampleRow> sampleRows(const std::string& folder) {
  std::vector<SampleRow> rows;
  const auto samples = samplesFolder();
  if (!samples) return rows;
  std::ifstream in(*samples / "MANIFEST.tsv");
  std::string line;
  std::getline(in, line);
  const std::vector<std::string> names = cells(line);
  while (std::getline(in, line)) {
    SampleRow row;
    const std::vector<std::string> values = cells(line);
    for (std::size_t i = 0; i < values.size() && i < names.size(); ++i) row.columns[names[i]] = values[i];
    if (row.file().starts_with(folder)) rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace lumivane
