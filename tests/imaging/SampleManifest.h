// The shared sample pictures and what independent readers say of each of them.
//
// Errors:  no rows when the samples are not on this machine.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumivane {

// ${LUMIVANE_SAMPLES}, or beside the project; nothing when neither is there.
[[nodiscard]] std::optional<std::filesystem::path> samplesFolder();

struct SampleRow {
  std::map<std::string, std::string> columns;  // without escapes; absent = empty
  [[nodiscard]] const std::string& operator[](const std::string& column) const;
  [[nodiscard]] std::string file() const { return (*this)["file"]; }
};

// The rows whose file lies below `folder` ("photos/").
[[nodiscard]] std::vector<SampleRow> sampleRows(const std::string& folder);

}  // namespace lumivane
